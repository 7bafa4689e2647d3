// What the library does when the loader has something to say: it remembers its own module handle, and with
// the first word and the last it sets up and takes down what all handles share. The loader speaks
// with one voice at a time, so nothing here is locked.
#include "foundation/log.h"
#include "foundation/random.h"
#include "interface/module_handle.h"

namespace {
bool gStarted = false;
}

void platform::OnLibraryNotification(ModuleHandle self, bool attached) {
    gModuleHandle = self;
    if (attached == gStarted) return;
    gStarted = attached;
    if (attached) {
        XLog::StartUp();
        XRandom::Shared();
    } else {
        XLog::ShutDown();
    }
}
