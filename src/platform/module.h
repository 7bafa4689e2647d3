// Loaded modules.
#pragma once

#include <cstdint>

#include "platform/operation.h"

namespace platform {

// A loaded module; null for none. As an argument of GetModuleFileNameW null means the program itself.
using ModuleHandle = void*;
using EntryPoint = void (*)();

// Loads a module. One given by an absolute path finds what it depends on beside itself and in the system's
// default folders, never in the current folder. Its own names stay its own: nothing loaded later sees them.
extern Operation<ModuleHandle(const char16_t* path)> LoadLibraryW;
extern Operation<EntryPoint(ModuleHandle module, const char* name)>
    GetProcAddress;  // null when there is no such name
extern Operation<bool(ModuleHandle module)> FreeLibrary;

// Stores the full path of the module's file, links resolved on POSIX. The result is its length; `count` when
// the path was cut to fit; 0 on failure.
extern Operation<std::uint32_t(ModuleHandle module, char16_t* path, std::uint32_t count)> GetModuleFileNameW;

// Provided by a library that links the load entry: called with the library's own handle each time the
// system's loader has something to say (`attached` is false for the last time). Nothing that waits for
// another thread may be done here.
void OnLibraryNotification(ModuleHandle self, bool attached);

}  // namespace platform
