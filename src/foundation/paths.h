// Paths, and the small file operations that take one.
//
// Only the platform's separator parts a path; nothing makes a relative path absolute. The functions of the
// first group work on the text alone.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/module.h"

namespace paths {

inline constexpr std::int32_t kCreateLimit = 260;  // creating a file
inline constexpr std::int32_t kOtherLimit = 248;   // everything else

XString GetExtension(const XString& path);    // with its dot; "." when the last part has none
XString GetFileName(const XString& path);     // behind the last separator
XString GetFileTitle(const XString& path);    // the file name without its extension
XString StripExtension(const XString& path);  // cuts at the last dot, even one in a folder's name
XString GetFolder(const XString& path);       // up to the last separator, which stays
void AddTrailingSeparator(XString& path);     // where there is none; an empty path stays empty
void StripTrailingSeparators(XString& path);
std::int32_t GetRootEnd(const XString& path);  // 1-based position behind the root; 1 for none
XString SplitLastFolder(XString& path);        // cuts the last part off and returns it; empty at the root
// With the long-path prefix from `limit` units on, unless the path begins with two separators.
XString ToLongPath(const XString& path, std::int32_t limit);

bool Exists(const XString& path);  // a file, a folder or a drive
bool MakeWritable(const XString& path);
bool CopyFile(const XString& from, const XString& to);   // overwrites
bool DeleteFile(const XString& path);                    // also a read-only file
bool CreateFolder(const XString& path);                  // with all levels above it
XString GetModulePath(platform::ModuleHandle module);    // empty on failure
XString GetModuleFolder(platform::ModuleHandle module);  // with its trailing separator
XString GetTempFolder();                                 // with its trailing separator

}  // namespace paths
