// XFindFile: a walk over the entries of a folder, "." and ".." left out.
#pragma once

#include "foundation/wide_string.h"
#include "platform/file.h"

class XFindFile {
  public:
    XFindFile(const XString& pattern, const XString& folder);  // "*.dll" below a folder
    explicit XFindFile(const XString& path);                   // one entry
    XFindFile(const XFindFile&) = delete;
    XFindFile& operator=(const XFindFile&) = delete;
    ~XFindFile();

    // True while an entry was found: Name() and Data() then describe it.
    bool Next();

    const XString& Name() const { return mName; }  // full path
    const platform::FindData& Data() const { return mData; }
    bool IsFolder() const { return (mData.attributes & platform::kAttributeDirectory) != 0; }

    bool mFoldersOnly = false;

  private:
    bool Step();
    bool IsSteppedOver() const;

    XString mName;
    platform::FindData mData;
    platform::Handle mHandle = platform::kInvalidHandle;
    XString mPattern;  // after the first step the folder before the names, with its separator
};
