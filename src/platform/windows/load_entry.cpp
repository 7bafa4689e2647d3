// What the loader calls when the library, or a thread beside it, comes and goes.
#include <windows.h>

#include "platform/module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID) {
    platform::OnLibraryNotification(self, reason != DLL_PROCESS_DETACH);
    return TRUE;
}
