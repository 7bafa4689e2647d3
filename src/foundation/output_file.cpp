#include "foundation/output_file.h"

#include "foundation/find_file.h"
#include "foundation/paths.h"
#include "foundation/random.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace {

constexpr const char16_t* kPrefix = u".qvpart-";
constexpr std::int32_t kPrefixLength = 8;
constexpr std::int32_t kDigits = 16;
constexpr int kAttempts = 100;

std::u16string EventName(const XString& digits) {
    return u"qvpart-" + std::u16string(digits.Text());
}

// The sixteen digits of a marked file's name; empty for any other file.
XString MarkOf(const XString& fileName) {
    if (!(fileName.Left(kPrefixLength) == kPrefix)) return {};
    const XString digits = fileName.Mid(kPrefixLength + 1, kPrefixLength + kDigits);
    for (std::int32_t i = 1; i <= kDigits; ++i) {
        const char16_t digit = digits.GetAt(i);
        if (!(digit >= u'0' && digit <= u'9') && !(digit >= u'A' && digit <= u'F')) return {};
    }
    return digits;
}

bool IsAbandoned(const XString& digits) {
    const platform::Handle mark = platform::OpenEventW(EventName(digits).c_str());
    if (!platform::IsOpen(mark)) return true;
    platform::CloseHandle(mark);
    return false;
}

// With its trailing separator, also for a name that stands alone.
XString FolderOf(const std::u16string& path) {
    XString folder = paths::GetFolder(XString(path.c_str()));
    if (!paths::GetFileName(folder).IsEmpty()) folder = u".";
    paths::AddTrailingSeparator(folder);
    return folder;
}

XString LongForm(const std::u16string& path) {
    return paths::ToLongPath(XString(path.c_str()), paths::kOtherLimit);
}

}  // namespace

XOutputFile::XOutputFile(std::u16string destination) : mDestination(std::move(destination)) {}

XOutputFile::~XOutputFile() {
    if (!mTemporary.empty()) paths::DeleteFile(XString(mTemporary.c_str()));
    platform::CloseHandle(mMark);
}

bool XOutputFile::Create() {
    RemoveAbandoned();
    const XString folder = FolderOf(mDestination);
    XString extension = paths::GetExtension(XString(mDestination.c_str()));
    if (extension == u".") extension = u"";
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        XRandom& random = XRandom::Shared();
        const XString digits = XString::FromHex64((std::uint64_t{random.Next(0)} << 32) | random.Next(0));
        const platform::Handle mark = platform::CreateEventW(EventName(digits).c_str());
        const std::u16string name =
            std::u16string(folder.Text()) + kPrefix + digits.Text() + extension.Text();
        const platform::Handle file =
            platform::CreateFileW(LongForm(name).Text(), platform::kGenericWrite, platform::kShareRead,
                                  platform::kCreateNew, platform::kAttributeNormal);
        if (platform::IsOpen(file)) {
            platform::CloseHandle(file);
            mTemporary = name;
            mMark = mark;
            return true;
        }
        const std::uint32_t error = platform::GetLastError();
        platform::CloseHandle(mark);
        if (error != platform::kErrorFileExists && error != platform::kErrorAlreadyExists) return false;
    }
    return false;
}

bool XOutputFile::Commit() {
    if (!platform::MoveFileExW(LongForm(mTemporary).Text(), LongForm(mDestination).Text(),
                               platform::kMoveReplaceExisting)) {
        return false;
    }
    mTemporary.clear();
    return true;
}

void XOutputFile::RemoveAbandoned() const {
    XString pattern(kPrefix);
    pattern += u"*";
    XFindFile files(pattern, FolderOf(mDestination));
    while (files.Next()) {
        const XString digits = MarkOf(paths::GetFileName(files.Name()));
        if (!digits.IsEmpty() && !files.IsFolder() && IsAbandoned(digits)) paths::DeleteFile(files.Name());
    }
}
