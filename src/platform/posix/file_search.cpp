// Walking a folder. The entries come in the folder's own order, matched here against the pattern's last
// part. A pattern without wildcards is asked for by its name, without a walk.
#include <dirent.h>

#include <algorithm>
#include <memory>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

// Goes back to the last * on a mismatch and lets it take one unit more, so the cost is at most the
// product of the two lengths.
bool Matches(const std::u16string& name, const std::u16string& pattern) {
    std::size_t n = 0, p = 0, star = std::u16string::npos, resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++n, ++p;
        } else if (star != std::u16string::npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(p), pattern.end(),
                       [](char16_t unit) { return unit == u'*'; });
}

bool Store(const std::string& path, const std::u16string& name, FindData* data) {
    struct stat state;
    if (name.size() >= std::size(data->name) || !Look(path, &state)) return false;
    data->attributes = AttributesOf(state);
    data->size = S_ISDIR(state.st_mode) ? 0 : static_cast<std::uint64_t>(state.st_size);
    *std::copy(name.begin(), name.end(), data->name) = u'\0';
    return true;
}

struct CloseFolder {
    void operator()(DIR* entries) const { closedir(entries); }
};
using Entries = std::unique_ptr<DIR, CloseFolder>;

class Search : public HandleObject {
  public:
    Search(std::string folder, std::u16string pattern, Entries entries)
        : mFolder(std::move(folder)), mPattern(std::move(pattern)), mEntries(std::move(entries)) {}

    // An entry that vanished between its listing and the look at it is passed over.
    bool Next(FindData* data) {
        errno = 0;
        while (const dirent* entry = mEntries ? readdir(mEntries.get()) : nullptr) {
            const std::u16string name = Wide(entry->d_name);
            if (Matches(name, mPattern) && Store(mFolder + entry->d_name, name, data)) return true;
            errno = 0;
        }
        return errno ? FailWithErrno() : Fail(kErrorNoMoreFiles);
    }

  private:
    std::string mFolder;
    std::u16string mPattern;
    Entries mEntries;  // null when the one entry asked for has been reported
};

Handle StartWalk(const std::string& folder, const std::u16string& pattern, FindData* data) {
    Entries entries(opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) {
        Fail(errno == ENOENT ? kErrorPathNotFound : ErrorOf(errno));
        return kInvalidHandle;
    }
    auto search = std::make_unique<Search>(folder, pattern, std::move(entries));
    if (search->Next(data)) return HandleOf(search.release());
    if (errno == 0) Fail(kErrorFileNotFound);
    return kInvalidHandle;
}

Handle FindFirst(const char16_t* pattern, FindData* data) {
    const std::u16string_view path(pattern);
    const std::size_t cut = path.rfind(u'/') + 1;  // 0 where there is no folder part
    const std::u16string folder(path.substr(0, cut)), last(path.substr(cut));
    if (last.find_first_of(u"*?") != last.npos) return StartWalk(Narrow(folder.c_str()), last, data);
    const std::string name = Narrow(pattern);
    errno = ENOENT;
    if (!last.empty() && Store(name, last, data)) return HandleOf(new Search({}, {}, {}));
    FailOnPath(name);
    return kInvalidHandle;
}

bool FindNext(Handle handle, FindData* data) {
    Search* const search = ObjectAs<Search>(handle);
    return search && search->Next(data);
}

bool Close(Handle handle) {
    Search* const search = ObjectAs<Search>(handle);
    delete search;
    return search != nullptr;
}

}  // namespace

constinit Operation<Handle(const char16_t*, FindData*)> FindFirstFileW{&FindFirst};
constinit Operation<bool(Handle, FindData*)> FindNextFileW{&FindNext};
constinit Operation<bool(Handle)> FindClose{&Close};

}  // namespace platform
