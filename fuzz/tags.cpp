// A file of any bytes as each kind of container (the first byte says which): its tags are read, changed and
// removed. A change that succeeds reads back and has kept the audio; one that fails has left the file as it
// was; neither leaves another file behind.
//
// The files are in memory: the platform's operations are ours here.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "modules/tags/audio_ranges.h"
#include "modules/tags/tag_file.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

struct Open {
    std::u16string path;
    std::size_t position = 0;
};

constexpr platform::Handle kFirst = 16, kEvent = 8;
std::map<std::u16string, std::string> gFiles;
std::vector<Open> gOpen;

Open& At(platform::Handle handle) {
    return gOpen.at(static_cast<std::size_t>(handle - kFirst));
}

platform::Handle OpenFile(const char16_t* path, std::uint32_t, std::uint32_t, std::uint32_t disposition,
                          std::uint32_t) {
    const bool isThere = gFiles.contains(path);
    if (disposition == platform::kOpenExisting ? !isThere : disposition == platform::kCreateNew && isThere) {
        platform::SetLastError(platform::kErrorFileNotFound);
        return platform::kInvalidHandle;
    }
    if (disposition != platform::kOpenExisting) gFiles[path].clear();
    gOpen.push_back({path});
    return kFirst + static_cast<platform::Handle>(gOpen.size()) - 1;
}

bool Read(platform::Handle handle, void* to, std::uint32_t count, std::uint32_t* read) {
    Open& open = At(handle);
    const std::string& file = gFiles.at(open.path);
    *read = static_cast<std::uint32_t>(
        std::min<std::size_t>(count, file.size() - std::min(open.position, file.size())));
    if (*read > 0) std::memcpy(to, file.data() + open.position, *read);
    open.position += *read;
    return true;
}

bool Write(platform::Handle handle, const void* data, std::uint32_t count, std::uint32_t* written) {
    Open& open = At(handle);
    std::string& file = gFiles.at(open.path);
    file.resize(std::max(file.size(), open.position + count));
    std::memcpy(file.data() + open.position, data, count);
    open.position += count;
    *written = count;
    return true;
}

bool Move(const char16_t* from, const char16_t* to, std::uint32_t) {
    auto node = gFiles.extract(from);
    Require(!node.empty());
    gFiles[to] = std::move(node.mapped());
    return true;
}

void TakeOverFiles() {
    platform::CreateFileW.Substitute(OpenFile);
    platform::ReadFile.Substitute(Read);
    platform::WriteFile.Substitute(Write);
    platform::MoveFileExW.Substitute(Move);
    platform::GetFileSizeEx.Substitute([](platform::Handle handle, std::int64_t* size) {
        *size = static_cast<std::int64_t>(gFiles.at(At(handle).path).size());
        return true;
    });
    platform::SetFilePointerEx.Substitute([](platform::Handle handle, std::int64_t position) {
        Require(position >= 0);
        At(handle).position = static_cast<std::size_t>(position);
        return true;
    });
    platform::CopyFileW.Substitute(
        [](const char16_t* from, const char16_t* to, bool) { return gFiles[to] = gFiles.at(from), true; });
    platform::DeleteFileW.Substitute([](const char16_t* path) { return gFiles.erase(path) > 0; });
    platform::CloseHandle.Substitute([](platform::Handle) { return true; });
    platform::FlushFileBuffers.Substitute([](platform::Handle) { return true; });
    platform::GetFileAttributesW.Substitute([](const char16_t* path) {
        return gFiles.contains(path) ? platform::kAttributeNormal : platform::kInvalidAttributes;
    });
    platform::SetFileAttributesW.Substitute([](const char16_t*, std::uint32_t) { return true; });
    platform::FindFirstFileW.Substitute(
        [](const char16_t*, platform::FindData*) { return platform::kInvalidHandle; });
    platform::CreateEventW.Substitute([](const char16_t*) { return kEvent; });
}

constexpr const char16_t* kFile = u"file";
constexpr TagContainer kContainers[] = {TagContainer::flac, TagContainer::oggVorbis, TagContainer::oggOpus,
                                        TagContainer::mpeg, TagContainer::wave,      TagContainer::aiff};

bool HasSameAudio(TagContainer container, const std::string& before) {
    gFiles[u"before"] = before;
    clFileReader old, made;
    Require(old.Open(u"before") && made.Open(kFile));
    const auto first = FindAudio(container, old), second = FindAudio(container, made);
    const bool isSame = first && second && IsSameAudio(*first, old, *second, made);
    gFiles.erase(u"before");
    return isSame;
}

bool ReadsBack(TagContainer container, const char16_t* value) {
    clIDTagList tags;
    Require(ReadFileTags(container, kFile, tags, clModuleLog(nullptr)));
    for (std::int32_t i = 0; i < tags.Count(); ++i)
        if (tags.At(i).name == u"TITLE" && tags.At(i).value == value) return true;
    return false;
}

template <class Change>
bool Try(TagContainer container, Change change) {
    const std::string before = gFiles[kFile];
    gOpen.clear();
    const bool isChanged = change();
    Require(gFiles.size() == 1);
    Require(gFiles[kFile] == before || (isChanged && HasSameAudio(container, before)));
    return isChanged;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    TakeOverFiles();
    const TagContainer container = kContainers[data[0] % std::size(kContainers)];
    const clModuleLog log(nullptr);
    gFiles.clear();
    gFiles[kFile].assign(reinterpret_cast<const char*>(data) + 1, size - 1);
    clIDTagList read, rows;
    ReadFileTags(container, kFile, read, log);
    Try(container, [&] { return WriteFileTags(container, kFile, read, log); });
    rows.Add(u"TITLE", u"fuzz");
    rows.AddBinary(u"PICTURE", u"art", "\xFF\xD8\xFF", 3);
    if (Try(container, [&] { return WriteFileTags(container, kFile, rows, log); }))
        Require(ReadsBack(container, u"fuzz"));
    Try(container, [&] { return DeleteFileTags(container, kFile, u"ARTIST", log); });
    if (Try(container, [&] { return DeleteFileTags(container, kFile, u"", log); }))
        Require(!ReadsBack(container, u"fuzz"));
    return 0;
}
