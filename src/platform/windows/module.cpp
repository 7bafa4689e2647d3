// Loaded modules.
#include "platform/module.h"

#include "platform/windows/native.h"

namespace platform {

namespace {

bool IsAbsolute(const wchar_t* path) {
    return (path[0] == L'\\' && path[1] == L'\\') || (path[0] && path[1] == L':' && path[2] == L'\\');
}

// The search flags take the current folder and PATH out of the search; the system demands a full path with
// them.
ModuleHandle Load(const char16_t* path) {
    const wchar_t* native = Native(path);
    return ::LoadLibraryExW(
        native, nullptr,
        IsAbsolute(native) ? LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS : 0);
}

HMODULE Module(ModuleHandle module) {
    return static_cast<HMODULE>(module);
}

}  // namespace

constinit Operation<ModuleHandle(const char16_t*)> LoadLibraryW{&Load};

constinit Operation<EntryPoint(ModuleHandle, const char*)> GetProcAddress{
    [](ModuleHandle module, const char* name) {
        return reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(::GetProcAddress(Module(module), name)));
    }};

constinit Operation<bool(ModuleHandle)> FreeLibrary{
    [](ModuleHandle module) { return ::FreeLibrary(Module(module)) != 0; }};

constinit Operation<std::uint32_t(ModuleHandle, char16_t*, std::uint32_t)> GetModuleFileNameW{
    [](ModuleHandle module, char16_t* path, std::uint32_t count) -> std::uint32_t {
        return ::GetModuleFileNameW(Module(module), Native(path), count);
    }};

}  // namespace platform
