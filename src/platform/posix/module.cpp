// Loaded modules.
//
// The dynamic linker looks for what a module depends on where the module's own file tells it to, which need
// not be beside it. When a library of a plain name is missing and stands in the module's folder, it is
// loaded from there and the module tried again; the linker then finds it among what is loaded.
#include "platform/module.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

constexpr int kDeepestDependency = 16;

// The linker lets one thread in at a time, also while a module's own start and end run. This lock, which adds
// no waiting to that, puts the order where a race detector sees it: what a module's start has written is read
// by whichever thread loads it next.
std::recursive_mutex gLinkerOrder;

std::string RealPath(const char* path) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path, nullptr), &free);
    return real ? real.get() : "";
}

// What the linker just complained about, if that is a library in `folder`: its messages
// begin with the file's name.
std::string MissingDependency(const std::string& folder) {
    const char* const message = dlerror();
    const std::string text = message ? message : "";
    const std::string name = text.substr(0, text.find(':'));
    if (name.empty() || name.find('/') != name.npos) return {};
    const std::string path = folder + name;
    return access(path.c_str(), R_OK) == 0 ? path : "";
}

void* Open(const std::string& path, int depth) {
    struct Dependencies {
        std::vector<void*> modules;
        ~Dependencies() {
            for (void* module : modules) dlclose(module);
        }
    } dependencies;  // each is held by the module that needs it once that is loaded
    for (;;) {
        dlerror();
        void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module || depth == kDeepestDependency) return module;
        const std::string missing = MissingDependency(FolderOf(path));
        void* const dependency = missing.empty() || missing == path ? nullptr : Open(missing, depth + 1);
        const auto& known = dependencies.modules;
        if (!dependency) return nullptr;
        const bool isNew = std::find(known.begin(), known.end(), dependency) == known.end();
        dependencies.modules.push_back(dependency);
        if (!isNew) return nullptr;
    }
}

// A path is resolved before the linker sees it, so that the module knows its place whatever the current
// folder becomes; a plain name is the linker's to find.
ModuleHandle Load(const char16_t* path) {
    const std::string name = Narrow(path);
    const bool isPath = name.find('/') != name.npos;
    const std::string file = isPath ? RealPath(name.c_str()) : name;
    const std::lock_guard order(gLinkerOrder);
    void* const module = file.empty() ? nullptr : Open(file, isPath ? 0 : kDeepestDependency);
    if (!module) Fail(kErrorModuleNotFound);
    return module;
}

// The linker would also find the name in what the module depends on; only its own counts.
EntryPoint Find(ModuleHandle module, const char* name) {
    void* const address = module ? dlsym(module, name) : nullptr;
    Dl_info info{};
    void* owner = nullptr;
    if (address && dladdr1(address, &info, &owner, RTLD_DL_LINKMAP) != 0 && owner == module) {
        return reinterpret_cast<EntryPoint>(address);
    }
    Fail(kErrorProcNotFound);
    return nullptr;
}

bool Free(ModuleHandle module) {
    const std::lock_guard order(gLinkerOrder);
    return module && dlclose(module) == 0 ? true : Fail(kErrorInvalidHandle);
}

std::string PathOf(ModuleHandle module) {
    link_map* map = nullptr;
    if (module && dlinfo(module, RTLD_DI_LINKMAP, &map) != 0) return {};
    const bool isProgram = !map || !map->l_name || !*map->l_name;
    return RealPath(isProgram ? "/proc/self/exe" : map->l_name);
}

std::uint32_t FileName(ModuleHandle module, char16_t* path, std::uint32_t count) {
    constexpr std::uint32_t kErrorInsufficientBuffer = 122;
    const std::u16string full = Wide(PathOf(module).c_str());
    if (full.empty()) return Fail(kErrorModuleNotFound);
    if (count == 0) return Fail(kErrorInsufficientBuffer);
    const std::size_t length = std::min<std::size_t>(full.size(), count - 1);
    *std::copy_n(full.begin(), length, path) = u'\0';
    if (length == full.size()) return static_cast<std::uint32_t>(length);
    Fail(kErrorInsufficientBuffer);
    return count;
}

}  // namespace

constinit Operation<ModuleHandle(const char16_t*)> LoadLibraryW{&Load};
constinit Operation<EntryPoint(ModuleHandle, const char*)> GetProcAddress{&Find};
constinit Operation<bool(ModuleHandle)> FreeLibrary{&Free};
constinit Operation<std::uint32_t(ModuleHandle, char16_t*, std::uint32_t)> GetModuleFileNameW{&FileName};

}  // namespace platform
