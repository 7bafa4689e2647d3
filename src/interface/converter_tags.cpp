// A file's tags, read and changed by the module that decodes it, and the host's own list of tags. The two share
// their rows: what was read from one file can go into the next conversion as it stands.
//
// A file is read all at once, as one block, when the host asks for the row at index 0; the other rows read what
// that left. A block of a megabyte or more is passed over in silence: a host that wants a title is not made to wait
// for what can only be a mistake.
#include <cstring>
#include <utility>

#include "foundation/qv_text.h"
#include "interface/converter.h"
#include "interface/file_request.h"
#include "interface/text.h"
#include "quavermill/quavermill.h"

namespace {

constexpr std::uint32_t kTagDataLimit = 1'000'000;  // bytes; a block of as many is too large

std::int32_t TakeTags(const clOpenFileRec& record, clIDTagList& tags) {
    if (!record.tagData || record.tagDataSize == 0 || record.tagDataSize >= kTagDataLimit) return QV_NOTHING;
    tags.Deserialise(record.tagData, record.tagDataSize);
    return QV_DONE;
}

// Art as long as the capacity stays behind, wanted so: a host whose buffer came back full could not tell whether
// more belonged to it. A row of text alone has no art either.
std::int32_t GiveArt(const IDTagRow& row, std::uint64_t capacity, std::uint8_t* art, std::uint64_t* artSize) {
    if (!art || row.art.Size() == 0 || row.art.Size() >= capacity) return QV_NO_ART;
    std::memcpy(art, row.art.Data(), row.art.Size());
    *artSize = row.art.Size();
    return QV_DONE;
}

// Replaces the list by the one row that is to be written: art, or a text where there is none.
void Prepare(clIDTagList& tags, const char16_t* name, const char16_t* value, const std::uint8_t* art,
             std::uint32_t artSize) {
    tags.Clear();
    if (artSize > 0) {
        tags.AddBinary(name, u"", art, artSize);
    } else {
        tags.Add(name, value);
    }
}

// False when the module refuses, or the rows are too large for a block.
bool WriteTags(const clQvDecoder& decoder, const char16_t* file, const clIDTagList& tags) {
    clByteStore flat;
    if (!tags.Serialise(flat)) return false;
    clCodecQueryRec order = {};
    order.text = ToQvText(file);
    order.data = flat.Data();
    order.dataSize = flat.Size();
    return decoder.Set(u"IDTags", &order);
}

}  // namespace

// From the moment a decoder was found the host's rows are gone, whatever comes of the reading.
std::int32_t clConverter::ReadIDTag(const char16_t* file, std::int32_t index, char16_t* name, char16_t* value,
                                    std::uint8_t* art, std::uint64_t* artSize) {
    clFileRequest request(kReadIDTags, file, log, moduleHandle);
    const std::uint64_t capacity = artSize ? std::exchange(*artSize, 0) : 0;
    if (!request.FindFile()) return request.Result();
    if (index == 0) {
        if (!request.FindDecoder()) return request.Result();
        tagList.Clear();
        request.Open(QV_OPEN_TAGS, [&](const clOpenFileRec& record) { return TakeTags(record, tagList); });
    }
    const IDTagRow* row = tagList.Fetch(index);
    const std::int32_t result = row ? GiveArt(*row, capacity, art, artSize) : request.Result();
    CopyOut(row, name, value);
    return result;
}

// The written row stays in the list and goes with the next conversion, wanted so: the list always holds what the
// last operation left. Without art there is none, whatever its size says.
std::int32_t clConverter::WriteIDTag(const char16_t* file, const char16_t* name, const char16_t* value,
                                     const std::uint8_t* art, const std::uint32_t* artSize) {
    clFileRequest request(kWriteIDTag, file, log, moduleHandle);
    if (!request.FindFile() || !request.FindDecoder()) return request.Result();
    request.Serve([&](const clQvDecoder& fresh) -> std::int32_t {
        Prepare(tagList, name, value, art, art && artSize ? *artSize : 0);
        return WriteTags(fresh, file, tagList) ? QV_DONE : QV_FAILED;
    });
    return request.Result();
}

// No name means all tags, to the module too: it gets the name as the host gave it.
std::int32_t clConverter::DeleteIDTag(const char16_t* file, const char16_t* tagName) {
    const bool all = !tagName || *tagName == u'\0';
    clFileRequest request(all ? kDeleteAllIDTags : kDeleteIDTag, file, log, moduleHandle);
    if (!request.FindFile() || !request.FindDecoder()) return request.Result();
    request.Serve([&](const clQvDecoder& fresh) -> std::int32_t {
        return fresh.DeleteATag(file, tagName) ? QV_DONE : QV_FAILED;
    });
    return request.Result();
}

std::int32_t clConverter::IDTagsAddToList(const char16_t* name, const char16_t* value) {
    XTraceScope trace(log, "clConverter::IDTagsAddToList");
    tagList.Add(name, value);
    return 1;
}

// A row without a value takes part in no conversion, so it is not read back either.
std::int32_t clConverter::IDTagsReadList(std::int32_t index, char16_t* name, char16_t* value) {
    XTraceScope trace(log, "clConverter::IDTagsReadList");
    if (index < 0 || index >= tagList.Count()) return 0;
    const IDTagRow& row = tagList.At(index);
    if (row.value.IsEmpty()) return 0;
    CopyOut(row.name, name);
    CopyOut(row.value, value);
    return 1;
}

std::int32_t clConverter::IDTagsRemoveFromList(std::int32_t index) {
    XTraceScope trace(log, "clConverter::IDTagsRemoveFromList");
    if (index >= 0) tagList.RemoveAt(index);
    return 1;
}
