// A LIST chunk holds a list type and then chunks of its own. One that is damaged yields what stands before
// the damage. A list is read whole, up to a size that no honest one reaches: its text can then not make the
// tags that go out larger than the library takes.
#include "modules/tags/info_fields.h"

#include <algorithm>
#include <string_view>

#include "modules/support/byte_text.h"
#include "modules/support/chunk_walk.h"
#include "modules/support/little_endian.h"

namespace {

constexpr std::uint32_t kMostListBytes = 400000;

struct Meaning {
    std::string_view id;
    std::u16string_view name;
};

constexpr Meaning kMeanings[] = {
    {"INAM", u"TITLE"},    {"IART", u"ARTIST"},      {"IPRD", u"ALBUM"},       {"ICRD", u"DATE"},
    {"IGNR", u"GENRE"},    {"ITRK", u"TRACKNUMBER"}, {"IPRT", u"TRACKNUMBER"}, {"ICMT", u"COMMENT"},
    {"IMUS", u"COMPOSER"}, {"ICOP", u"COPYRIGHT"},   {"IENG", u"ENGINEER"},    {"ISBJ", u"SUBJECT"},
    {"IKEY", u"KEYWORDS"}, {"ILNG", u"LANGUAGE"},    {"ISFT", u"ENCODEDBY"},
};

void AddField(const std::uint8_t* id, const std::uint8_t* bytes, std::size_t size,
              std::vector<InfoField>& fields) {
    InfoField field{std::string(id, id + 4), TextFromBytes(bytes, size).Text()};
    if (!field.text.empty() && std::ranges::find(fields, field.id, &InfoField::id) == fields.end())
        fields.push_back(std::move(field));
}

void AddFields(const std::vector<std::uint8_t>& list, std::vector<InfoField>& fields) {
    for (std::size_t at = 4; at < list.size() && list.size() - at >= 8;) {
        const std::size_t size = std::min<std::size_t>(Get32(&list[at + 4]), list.size() - at - 8);
        AddField(&list[at], list.data() + at + 8, size, fields);
        at += 8 + size + (size & 1);
    }
}

}  // namespace

bool ReadInfoFields(clFileReader& file, std::vector<InfoField>& fields) {
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
        AddFields(list, fields);
    }
    return file.Error() == 0;
}

TagSet RowsOfInfo(const std::vector<InfoField>& fields) {
    TagSet set;
    for (const InfoField& field : fields) {
        const auto* meaning = std::ranges::find(kMeanings, field.id, &Meaning::id);
        if (meaning == std::end(kMeanings)) continue;
        const std::u16string name(meaning->name);
        if (set.At(name).empty()) set.Add(name, field.text);
    }
    return set;
}

std::vector<std::string> InfoIdsOfName(const std::u16string& name) {
    std::vector<std::string> ids;
    for (const Meaning& meaning : kMeanings)
        if (meaning.name == name) ids.emplace_back(meaning.id);
    return ids;
}
