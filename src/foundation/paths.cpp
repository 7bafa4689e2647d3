// Paths as text: all of it is a matter of the last dot, the last separator and the end of the root.
#include "foundation/paths.h"

#include "platform/names.h"

namespace paths {

namespace {

bool IsSeparator(char16_t unit) {
    return unit == platform::kPathSeparator;
}

// The position of the last `unit`, 0 for none.
std::int32_t FindLast(const XString& text, char16_t unit) {
    std::int32_t position = text.Length();
    while (position > 0 && text.GetAt(position) != unit) --position;
    return position;
}

bool HasLongPrefix(const XString& path) {
    const XString prefix(platform::kLongPathPrefix);
    return !prefix.IsEmpty() && path.Left(prefix.Length()) == prefix;
}

}  // namespace

XString GetExtension(const XString& path) {
    const std::int32_t dot = FindLast(path, u'.');
    return dot > FindLast(path, platform::kPathSeparator) ? path.MidToEnd(dot) : XString(u".");
}

XString GetFileName(const XString& path) {
    return path.MidToEnd(FindLast(path, platform::kPathSeparator) + 1);
}

XString GetFileTitle(const XString& path) {
    return StripExtension(GetFileName(path));
}

// Unlike GetExtension it does not stop at a separator: in "Music.old\track" it is the folder's dot that cuts.
XString StripExtension(const XString& path) {
    const std::int32_t dot = FindLast(path, u'.');
    return dot > 0 ? path.Left(dot - 1) : path;
}

XString GetFolder(const XString& path) {
    const std::int32_t separator = FindLast(path, platform::kPathSeparator);
    return separator > 0 ? path.Left(separator) : path;
}

void AddTrailingSeparator(XString& path) {
    const char16_t separator[] = {platform::kPathSeparator, 0};
    if (!path.IsEmpty() && !IsSeparator(path.GetAt())) path += separator;
}

void StripTrailingSeparators(XString& path) {
    while (IsSeparator(path.GetAt())) path.Truncate(1);
}

std::int32_t GetRootEnd(const XString& path) {
    // Behind the prefix, 4 units long, stands a drive: its separator is the 7th at the earliest.
    const std::int32_t first = HasLongPrefix(path) ? 7 : platform::kFirstRootSeparator;
    return path.Find(platform::kPathSeparator, first) + 1;
}

XString SplitLastFolder(XString& path) {
    XString whole(path);
    StripTrailingSeparators(whole);
    if (GetRootEnd(whole) == 1) return XString();  // a bare root has just lost the separator that made it one
    XString last = GetFileName(whole);
    path = GetFolder(whole);
    return last;
}

XString ToLongPath(const XString& path, std::int32_t limit) {
    const bool isNetworkPath = IsSeparator(path.GetAt(1)) && IsSeparator(path.GetAt(2));
    if (isNetworkPath || path.Length() < limit) return path;
    XString longPath(platform::kLongPathPrefix);
    longPath += path;
    return longPath;
}

}  // namespace paths
