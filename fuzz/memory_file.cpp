// What the library and the modules ask of files is answered out of a string.
#include "memory_file.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/error.h"
#include "platform/file.h"

std::string gFile;

namespace {
std::size_t gPosition = 0;
constexpr platform::Handle kFile = 3;
}  // namespace

void TakeOverFiles() {
    platform::CreateFileW.Substitute(
        [](const char16_t*, std::uint32_t, std::uint32_t, std::uint32_t disposition, std::uint32_t) {
            if (disposition == platform::kCreateAlways) gFile.clear();
            gPosition = 0;
            return kFile;
        });
    platform::GetFileSizeEx.Substitute([](platform::Handle, std::int64_t* size) {
        *size = static_cast<std::int64_t>(gFile.size());
        return true;
    });
    platform::SetFilePointerEx.Substitute([](platform::Handle, std::int64_t position) {
        Require(position >= 0);
        gPosition = static_cast<std::size_t>(position);
        return true;
    });
    platform::ReadFile.Substitute([](platform::Handle, void* to, std::uint32_t count, std::uint32_t* read) {
        const std::size_t rest = gFile.size() - std::min(gPosition, gFile.size());
        *read = static_cast<std::uint32_t>(std::min<std::size_t>(count, rest));
        if (*read > 0) std::memcpy(to, gFile.data() + gPosition, *read);
        gPosition += *read;
        return true;
    });
    platform::WriteFile.Substitute(
        [](platform::Handle, const void* data, std::uint32_t count, std::uint32_t* written) {
            gFile.resize(std::max(gFile.size(), gPosition + count));
            std::memcpy(gFile.data() + gPosition, data, count);
            gPosition += count;
            *written = count;
            return true;
        });
    platform::CloseHandle.Substitute([](platform::Handle) { return true; });
}
