#include "plugins/dll.h"

#include "foundation/wide_string.h"

XDLL::~XDLL() {
    FreeModule();
}

void XDLL::FreeModule() {
    if (mModule) platform::FreeLibrary(mModule);
    mModule = nullptr;
}

bool XDLL::LoadEntries(const char16_t* path, std::span<const char* const> names,
                       std::span<platform::EntryPoint> slots) {
    if (mModule) return EntriesGood();
    mEntriesGood = 1;
    if (path) {
        mModule = platform::LoadLibraryW(path);
        if (!mModule) mEntriesGood = 0;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        slots[i] = mModule ? platform::GetProcAddress(mModule, names[i]) : nullptr;
        if (!slots[i]) mEntriesGood = 0;
    }
    return EntriesGood();
}
