// XFile: one open file or pipe end.
//
// Reading and writing pass straight to the platform, unbuffered. A failure is a result, unless a caller has
// set `mShowErrors`: then Read and Write ask the user whether to try again.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/types.h"

class XFile {
  public:
    XFile() = default;
    explicit XFile(const XString& path) : mPath(path) {}
    XFile(const XFile&) = delete;
    XFile& operator=(const XFile&) = delete;
    ~XFile() { Close(); }

    // Closes what was open, and opens mPath for writing, empty; a path of 260 units or more goes in its
    // long form. True when it is open.
    bool Create();
    // Returns the bytes read. A read cut short by the end of the file is no failure. `failed` may be null.
    std::uint32_t Read(void* buffer, std::uint32_t count, bool* failed);
    // True when all bytes were written. Null with a count of 0 is a success.
    bool Write(const void* buffer, std::uint32_t count);
    void Close();

    bool IsOpen() const { return mHandle != platform::kInvalidHandle; }

    XString mPath;
    platform::Handle mHandle = platform::kInvalidHandle;
    bool mShowErrors = false;  // Create clears it
    bool mOwnsHandle = false;  // Create sets it
};
