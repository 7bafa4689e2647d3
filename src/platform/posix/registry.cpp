// The settings store: a key is a folder, a value is a file in it, holding the value's type in
// four bytes and then its data.
//
// A value is written under a name of its own, made sure to be on the disk, and renamed: there is never
// a moment at which a reader or a crash could meet half of it. That takes the disk's own time, so a
// value that stands there already is left as it is. Names are folded to lower case and spelled so that
// any text is one file name; a value's begins with '=', which no key's does, so a key and a value may
// have one name.
#include "platform/registry.h"

#include <fcntl.h>
#include <pwd.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"
#include "platform/posix/safe_name.h"

namespace platform {

using namespace posix;

namespace {

constexpr std::uint32_t kErrorMoreData = 234;
constexpr std::uint32_t kKeySetValue = 2;
constexpr std::size_t kTypeBytes = 4;

struct Key : HandleObject {
    Key(std::string path, std::uint32_t rights) : folder(std::move(path)), access(rights) {}
    const std::string folder;  // with its trailing separator
    const std::uint32_t access;
};

// A handle of another kind is an answer here, not a last error.
Key* KeyOf(Handle handle) {
    return dynamic_cast<Key*>(ObjectOf(handle));
}

std::string Folded(std::u16string text) {
    for (char16_t& unit : text) {
        if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
    }
    return SafeName(Narrow(text.c_str()));
}

std::string HomeFolder() {
    if (const char* const home = getenv("HOME"); home && *home) return home;
    std::vector<char> buffer(16384);
    passwd record{};
    passwd* found = nullptr;
    getpwuid_r(geteuid(), &record, buffer.data(), buffer.size(), &found);
    return found ? found->pw_dir : "/";
}

// A relative path in the variable counts as none.
std::string StoreFolder() {
    const char* const configured = getenv("XDG_CONFIG_HOME");
    const std::string base = configured && *configured == '/' ? configured : HomeFolder() + "/.config";
    return base + "/quavermill/";
}

// Creates every folder on the way that is not there yet.
bool MakeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1)) {
        if (mkdir(path.substr(0, end).c_str(), 0700) == 0 || errno == EEXIST) continue;
        struct stat state;  // a folder above that may not be written to has other reasons to refuse
        if (stat(path.substr(0, end).c_str(), &state) != 0) return false;
    }
    return true;
}

std::uint32_t Open(const char16_t* path, std::uint32_t access, Handle* key) {
    *key = kNullHandle;
    std::string folder = StoreFolder();
    std::u16string_view rest(path);
    while (!rest.empty()) {
        const std::u16string_view part = rest.substr(0, rest.find(u'\\'));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        if (!part.empty()) folder += Folded(std::u16string(part)) + "/";
    }
    if (!MakeFolders(folder)) return ErrorOf(errno);
    *key = HandleOf(new Key(folder, access));
    return kErrorSuccess;
}

std::string ValuePath(const Key& key, const char16_t* name) {
    return key.folder + "=" + Folded(name ? name : u"");
}

// The whole file. It was complete before it got its name, and a newer one would be another file.
bool ReadWhole(const std::string& path, std::string* bytes) {
    const Descriptor file(Retry([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    struct stat state;
    if (!file || fstat(file.Get(), &state) != 0) return false;
    bytes->resize(static_cast<std::size_t>(state.st_size));
    const ssize_t got = Retry([&] { return read(file.Get(), bytes->data(), bytes->size()); });
    errno = EIO;
    return got == state.st_size && bytes->size() >= kTypeBytes;
}

std::uint32_t Query(Handle handle, const char16_t* name, std::uint32_t* type, void* data,
                    std::uint32_t* size) {
    const Key* const key = KeyOf(handle);
    if (!key) return kErrorInvalidHandle;
    if (!(key->access & kKeyQueryValue)) return kErrorAccessDenied;
    if (data && !size) return kErrorInvalidParameter;
    std::string bytes;
    if (!ReadWhole(ValuePath(*key, name), &bytes)) return ErrorOf(errno);
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
    };
    if (type) *type = byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
    const auto held = static_cast<std::uint32_t>(bytes.size() - kTypeBytes);
    const std::uint32_t room = size ? *size : 0;
    if (size) *size = held;
    if (data && room < held) return kErrorMoreData;
    if (data) std::memcpy(data, bytes.data() + kTypeBytes, held);
    return kErrorSuccess;
}

bool WriteAndSettle(const std::string& path, const std::string& bytes) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    const Descriptor file(Retry([&] { return open(path.c_str(), flags, 0600); }));
    return file && WriteAll(file.Get(), bytes.data(), bytes.size()) &&
           Retry([&] { return fsync(file.Get()); }) == 0;
}

std::string TemporaryName(const Key& key) {
    std::random_device source;
    return key.folder + "~" + std::to_string(getpid()) + "-" + std::to_string(source());
}

std::uint32_t Set(Handle handle, const char16_t* name, std::uint32_t type, const void* data,
                  std::uint32_t size) {
    const Key* const key = KeyOf(handle);
    if (!key) return kErrorInvalidHandle;
    if (!(key->access & kKeySetValue)) return kErrorAccessDenied;
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(type >> shift);
    if (size) bytes.append(static_cast<const char*>(data), size);
    const std::string path = ValuePath(*key, name);
    if (std::string held; ReadWhole(path, &held) && held == bytes) return kErrorSuccess;
    const std::string temporary = TemporaryName(*key);
    if (WriteAndSettle(temporary, bytes) && rename(temporary.c_str(), path.c_str()) == 0) {
        return kErrorSuccess;
    }
    const std::uint32_t error = ErrorOf(errno);
    unlink(temporary.c_str());
    return error;
}

std::uint32_t Close(Handle handle) {
    Key* const key = KeyOf(handle);
    delete key;
    return key ? kErrorSuccess : kErrorInvalidHandle;
}

}  // namespace

constinit Operation<std::uint32_t(const char16_t*, std::uint32_t, Handle*)> RegCreateKeyExW{&Open};
constinit Operation<std::uint32_t(Handle, const char16_t*, std::uint32_t*, void*, std::uint32_t*)>
    RegQueryValueExW{&Query};
constinit Operation<std::uint32_t(Handle, const char16_t*, std::uint32_t, const void*, std::uint32_t)>
    RegSetValueExW{&Set};
constinit Operation<std::uint32_t(Handle)> RegCloseKey{&Close};

}  // namespace platform
