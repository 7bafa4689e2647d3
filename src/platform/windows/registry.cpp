// The registry below HKEY_CURRENT_USER.
#include "platform/registry.h"

#include "platform/windows/native.h"

namespace platform {

namespace {

static_assert(kKeyQueryValue == KEY_QUERY_VALUE && kKeyWrite == KEY_WRITE);
static_assert(kRegString == REG_SZ && kRegExpandString == REG_EXPAND_SZ && kRegDword == REG_DWORD);

HKEY Key(Handle key) {
    return reinterpret_cast<HKEY>(key);
}

std::uint32_t Result(LSTATUS status) {
    return static_cast<std::uint32_t>(status);
}

}  // namespace

constinit Operation<std::uint32_t(const char16_t*, std::uint32_t, Handle*)> RegCreateKeyExW{
    [](const char16_t* path, std::uint32_t access, Handle* key) {
        HKEY opened = nullptr;
        const LSTATUS status = ::RegCreateKeyExW(HKEY_CURRENT_USER, Native(path), 0, nullptr, 0, access,
                                                 nullptr, &opened, nullptr);
        *key = status == ERROR_SUCCESS ? FromNative(opened) : kNullHandle;
        return Result(status);
    }};

constinit Operation<std::uint32_t(Handle, const char16_t*, std::uint32_t*, void*, std::uint32_t*)>
    RegQueryValueExW{
        [](Handle key, const char16_t* name, std::uint32_t* type, void* data, std::uint32_t* size) {
            return Result(::RegQueryValueExW(Key(key), Native(name), nullptr, Native(type),
                                             static_cast<BYTE*>(data), Native(size)));
        }};

constinit Operation<std::uint32_t(Handle, const char16_t*, std::uint32_t, const void*, std::uint32_t)>
    RegSetValueExW{
        [](Handle key, const char16_t* name, std::uint32_t type, const void* data, std::uint32_t size) {
            return Result(
                ::RegSetValueExW(Key(key), Native(name), 0, type, static_cast<const BYTE*>(data), size));
        }};

constinit Operation<std::uint32_t(Handle)> RegCloseKey{
    [](Handle key) { return Result(::RegCloseKey(Key(key))); }};

}  // namespace platform
