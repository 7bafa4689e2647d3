// The system lets a process see a key of its choice as the current user's.
#include "support/own_settings.h"

#include <windows.h>

#include <string>

struct OwnSettings::Store {
    std::wstring path = L"Software\\Brindleway\\QuavermillTest-" + std::to_wstring(GetCurrentProcessId()) +
                        L"-" + std::to_wstring(GetTickCount64());
    HKEY key = nullptr;
};

OwnSettings::OwnSettings() : mStore(std::make_unique<Store>()) {
    RegCreateKeyExW(HKEY_CURRENT_USER, mStore->path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                    &mStore->key, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, mStore->key);
}

OwnSettings::~OwnSettings() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(mStore->key);
    RegDeleteTreeW(HKEY_CURRENT_USER, mStore->path.c_str());
}
