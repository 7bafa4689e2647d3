// Birth and death of a converter.
//
// Birth sets up the road of the reported text before anything can report, and starts the tick last, when
// nothing can fail any more. Until the body has ended there is no destructor to close the log's handles, so a
// birth that fails closes them itself.
#include "interface/converter.h"

#include "interface/module_handle.h"

clConverter::clConverter() : moduleHandle(gModuleHandle) {
    XTraceScope trace(log, "clConverter::clConverter");
    try {
        OpenChannel();
        if (CheckLicence()) StartTicking();
    } catch (...) {
        CloseChannel();
        throw;
    }
}

clConverter::~clConverter() {
    XTraceScope trace(log, "clConverter::~clConverter");
    ReleaseModules();
    CloseChannel();
}

// Modules may write to the log up to their end, so they go before its handles do.
void clConverter::ReleaseModules() {
    settingsEncoder.Unload();
    directEncoder.Unload();
    decoder.Unload();
}

// The place for a licence. None is asked for.
bool clConverter::CheckLicence() {
    return true;
}
