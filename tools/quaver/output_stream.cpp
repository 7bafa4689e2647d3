#include "output_stream.h"

#include <algorithm>

#include "decimal.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/names.h"
#include "platform/program.h"

namespace {

constexpr int kAttempts = 100;
constexpr std::size_t kPiece = 1 << 20;

// With its separator; empty for a name alone. Windows knows two separators.
std::u16string FolderOf(const std::u16string& path) {
    const char16_t separators[] = {u'/', platform::kPathSeparator, u'\0'};
    return path.substr(0, path.find_last_of(separators) + 1);
}

}  // namespace

OutputStream::OutputStream(std::u16string destination) : mDestination(std::move(destination)) {}

OutputStream::~OutputStream() {
    Close();
    if (!mTemporary.empty()) platform::DeleteFileW(mTemporary.c_str());
}

bool OutputStream::Open() {
    if (IsFile()) return CreateTemporary();
    mHandle = platform::GetStdHandle(platform::kStdOutput);
    return platform::IsOpen(mHandle);
}

bool OutputStream::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kPiece);
        const auto count = static_cast<std::uint32_t>(piece.size());
        std::uint32_t written = 0;
        if (!platform::WriteFile(mHandle, piece.data(), count, &written) || written != count) return false;
        bytes.remove_prefix(piece.size());
    }
    return true;
}

bool OutputStream::Rewrite(std::string_view bytes) {
    return platform::SetFilePointerEx(mHandle, 0) && Write(bytes);
}

bool OutputStream::Commit() {
    if (!IsFile()) return true;
    Close();
    if (!platform::MoveFileExW(mTemporary.c_str(), mDestination.c_str(), platform::kMoveReplaceExisting))
        return false;
    mTemporary.clear();
    return true;
}

bool OutputStream::CreateTemporary() {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::u16string name = FolderOf(mDestination) + u".quaver-" + Decimal(platform::GetTickCount()) +
                                    u"-" + Decimal(attempt) + u".part";
        mHandle = platform::CreateFileW(name.c_str(), platform::kGenericWrite, platform::kShareRead,
                                        platform::kCreateNew, platform::kAttributeNormal);
        if (platform::IsOpen(mHandle)) {
            mTemporary = name;
            return true;
        }
        const std::uint32_t error = platform::GetLastError();
        if (error != platform::kErrorFileExists && error != platform::kErrorAlreadyExists) return false;
    }
    return false;
}

void OutputStream::Close() {
    if (IsFile() && platform::IsOpen(mHandle)) platform::CloseHandle(mHandle);
    mHandle = platform::kInvalidHandle;
}
