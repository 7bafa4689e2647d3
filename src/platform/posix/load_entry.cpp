// What the dynamic loader runs when the library comes and goes.
#include <dlfcn.h>
#include <link.h>

#include "platform/module.h"

namespace {

// The handle that dlopen would give for this very library, without taking a reference to it.
platform::ModuleHandle Self() {
    Dl_info info{};
    link_map* map = nullptr;
    if (!dladdr1(reinterpret_cast<void*>(&Self), &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP))
        return nullptr;
    return map;
}

__attribute__((constructor)) void Attach() {
    platform::OnLibraryNotification(Self(), true);
}
__attribute__((destructor)) void Detach() {
    platform::OnLibraryNotification(Self(), false);
}

}  // namespace
