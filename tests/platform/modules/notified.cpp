// A library with the load entry: it keeps what the loader told it.
#include "platform/module.h"

namespace {
platform::ModuleHandle gSelf = nullptr;
bool* gDetached = nullptr;
}  // namespace

void platform::OnLibraryNotification(ModuleHandle self, bool attached) {
    if (attached) gSelf = self;
    if (!attached && gDetached) *gDetached = true;
}

extern "C" __attribute__((visibility("default"))) platform::ModuleHandle Self();
extern "C" __attribute__((visibility("default"))) void TellDetached(bool* flag);

platform::ModuleHandle Self() {
    return gSelf;
}
void TellDetached(bool* flag) {
    gDetached = flag;
}
