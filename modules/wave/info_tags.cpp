// A LIST chunk holds a list type and then chunks of its own. One that is damaged yields what stands before
// the damage. A list is read whole, up to a size that no honest one reaches: its text can then not make the
// tags that go out larger than the library takes.
#include "modules/wave/info_tags.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "modules/support/byte_text.h"
#include "modules/support/little_endian.h"
#include "modules/wave/chunk_walk.h"

namespace {

constexpr std::uint32_t kMostListBytes = 400000;

struct Field {
    std::uint32_t id;
    const char16_t* name;
};

constexpr Field kFields[] = {
    {ChunkId("INAM"), u"Title"},       {ChunkId("IART"), u"Artist"},   {ChunkId("IPRD"), u"Album"},
    {ChunkId("ICRD"), u"Date"},        {ChunkId("IGNR"), u"Genre"},    {ChunkId("ITRK"), u"TrackNumber"},
    {ChunkId("IPRT"), u"TrackNumber"}, {ChunkId("ICMT"), u"Comment"},  {ChunkId("IMUS"), u"Composer"},
    {ChunkId("ICOP"), u"Copyright"},   {ChunkId("IENG"), u"Engineer"}, {ChunkId("ISBJ"), u"Subject"},
    {ChunkId("IKEY"), u"Keywords"},    {ChunkId("ILNG"), u"Language"}, {ChunkId("ISFT"), u"EncodedBy"},
};

bool HasRow(const clIDTagList& tags, const char16_t* name) {
    for (std::int32_t i = 0; i < tags.Count(); ++i)
        if (tags.At(i).name == name) return true;
    return false;
}

void AddField(std::uint32_t id, const std::uint8_t* bytes, std::size_t size, clIDTagList& tags) {
    const Field* field = std::ranges::find(kFields, id, &Field::id);
    if (field == std::end(kFields) || HasRow(tags, field->name)) return;
    const XString value = TextFromBytes(bytes, size);
    if (!value.IsEmpty()) tags.Add(field->name, value.Text());
}

void AddFields(const std::vector<std::uint8_t>& list, clIDTagList& tags) {
    for (std::size_t at = 4; at < list.size() && list.size() - at >= 8;) {
        const std::uint32_t id = Get32(&list[at]);
        const std::size_t size = std::min<std::size_t>(Get32(&list[at + 4]), list.size() - at - 8);
        AddField(id, list.data() + at + 8, size, tags);
        at += 8 + size + (size & 1);
    }
}

}  // namespace

bool ReadInfoTags(clFileReader& file, clIDTagList& tags) {
    clChunkWalk walk(file);
    clChunk chunk;
    std::uint32_t budget = kMostListBytes;
    if (!walk.Begin().IsEmpty()) return false;
    while (walk.Next(chunk)) {
        std::uint8_t type[4];
        if (chunk.id != ChunkId("LIST") || chunk.available < sizeof type) continue;
        if (!file.Fetch(chunk.position, type, sizeof type)) break;
        if (Get32(type) != ChunkId("INFO")) continue;
        std::vector<std::uint8_t> list(
            static_cast<std::size_t>(std::min<std::uint64_t>(chunk.available, budget)));
        std::uint32_t got = 0;
        if (!file.Read(chunk.position, list.data(), static_cast<std::uint32_t>(list.size()), &got)) break;
        list.resize(got);
        budget -= got;
        AddFields(list, tags);
    }
    return file.Error() == 0;
}
