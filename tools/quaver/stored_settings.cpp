#include "stored_settings.h"

#include <cstdint>

#include "platform/registry.h"
#include "quavermill/quavermill.h"

namespace {

constexpr const char16_t* kValue = u"" QV_SETTINGS_VALUE;

// The key of an encoder; opening it makes it.
class Key {
  public:
    Key(const std::u16string& encoder, std::uint32_t access) {
        platform::RegCreateKeyExW((u"" QV_SETTINGS_KEY + encoder).c_str(), access, &handle);
    }
    ~Key() {
        if (handle != platform::kNullHandle) platform::RegCloseKey(handle);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    platform::Handle handle = platform::kNullHandle;
};

}  // namespace

// Whoever stores counts the NUL, but a text without one is a text too.
std::u16string StoredSettings(const std::u16string& encoder) {
    const Key key(encoder, platform::kKeyQueryValue);
    std::uint32_t type = 0, size = 0;
    if (platform::RegQueryValueExW(key.handle, kValue, &type, nullptr, &size) != 0) return {};
    if (type != platform::kRegString && type != platform::kRegExpandString) return {};
    std::u16string text(size / sizeof(char16_t) + 1, u'\0');
    if (platform::RegQueryValueExW(key.handle, kValue, nullptr, text.data(), &size) != 0) return {};
    return text.c_str();
}

bool StoreSettings(const std::u16string& encoder, const std::u16string& text) {
    const Key key(encoder, platform::kKeyWrite);
    const auto size = static_cast<std::uint32_t>((text.size() + 1) * sizeof(char16_t));
    return platform::RegSetValueExW(key.handle, kValue, platform::kRegString, text.c_str(), size) == 0;
}
