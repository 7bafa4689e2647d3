// A walk is a chain of steps: the first opens the search, the others continue it, and entries that nobody
// wants are stepped over.
#include "foundation/find_file.h"

#include "foundation/paths.h"

XFindFile::XFindFile(const XString& pattern, const XString& folder) : mPattern(folder) {
    paths::AddTrailingSeparator(mPattern);
    mPattern += pattern;
}

XFindFile::XFindFile(const XString& path) : mPattern(path) {
    paths::StripTrailingSeparators(mPattern);
}

XFindFile::~XFindFile() {
    if (mHandle != platform::kInvalidHandle) platform::FindClose(mHandle);
}

bool XFindFile::Next() {
    bool found = false;
    do {
        found = Step();
    } while (found && IsSteppedOver());
    if (!found || mData.name[0] == 0) return false;
    mName = mPattern;
    mName += mData.name;
    return true;
}

bool XFindFile::Step() {
    mData = {};
    if (mHandle != platform::kInvalidHandle) return platform::FindNextFileW(mHandle, &mData);
    if (mPattern.IsEmpty()) return false;
    mHandle = platform::FindFirstFileW(paths::ToLongPath(mPattern, paths::kOtherLimit).Text(), &mData);
    // What stays is the folder before the names: nothing where the pattern named none.
    mPattern = mPattern.Left(mPattern.Length() - paths::GetFileName(mPattern).Length());
    return mHandle != platform::kInvalidHandle;
}

bool XFindFile::IsSteppedOver() const {
    const XString name(mData.name);
    return (mFoldersOnly && !IsFolder()) || name == u"." || name == u"..";
}
