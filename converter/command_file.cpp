#include "converter/command_file.h"

#include "foundation/file.h"
#include "foundation/paths.h"
#include "platform/file.h"

namespace {
constexpr std::int64_t kLargest = 256 << 20;
constexpr std::u16string_view kFirstSwitch = u" -infile=";
}  // namespace

bool TakeCommandFile(const std::u16string& name, std::u16string* text) {
    const XString path(name.c_str());
    XFile file;
    file.mOwnsHandle = true;
    file.mHandle =
        platform::CreateFileW(paths::ToLongPath(path, paths::kCreateLimit).Text(), platform::kGenericRead,
                              platform::kShareRead, platform::kOpenExisting, platform::kAttributeNormal);
    std::int64_t bytes = 0;
    if (!file.IsOpen() || !platform::GetFileSizeEx(file.mHandle, &bytes)) return false;
    if (bytes < 0 || bytes > kLargest || bytes % 2 != 0) return false;
    text->resize(static_cast<std::size_t>(bytes) / 2);
    const bool whole = file.Read(text->data(), static_cast<std::uint32_t>(bytes), nullptr) == bytes;
    file.Close();
    if (text->starts_with(kFirstSwitch)) paths::DeleteFile(path);
    return whole;
}
