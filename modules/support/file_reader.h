// clFileReader: a file read at any place, with 64-bit positions.
//
// Two ways in: Fetch for the few bytes of a header, through a window that makes a walk over neighbouring
// headers cost one system call per window; Read for audio, straight into the caller's block. One thread at a
// time.
#pragma once

#include <array>
#include <cstdint>

#include "platform/types.h"

class clFileReader {
  public:
    // Small, since a walk over far-apart headers fills it anew for each of them.
    static constexpr std::uint32_t kWindowBytes = 4096;

    clFileReader() = default;
    clFileReader(const clFileReader&) = delete;
    clFileReader& operator=(const clFileReader&) = delete;
    ~clFileReader() { Close(); }

    // Closes what was open. False when the file can't be opened or its size asked: Error() then says why.
    bool Open(const char16_t* path);
    void Close();

    bool IsOpen() const { return platform::IsOpen(mHandle); }
    std::uint64_t Size() const { return mSize; }  // as it was at Open

    // All of `count` bytes, at most kWindowBytes, from `position`. False when the file ends before, or when
    // reading failed: Error() tells the two apart.
    bool Fetch(std::uint64_t position, void* to, std::uint32_t count);
    // Up to `count` bytes: *got is what there was, less than `count` only at the end of the file or on
    // failure. False on failure.
    bool Read(std::uint64_t position, void* to, std::uint32_t count, std::uint32_t* got);

    // The platform's number of the first failure since Open; 0 for none.
    std::uint32_t Error() const { return mError; }

  private:
    bool Fail();
    bool Holds(std::uint64_t position, std::uint32_t count) const;

    platform::Handle mHandle = platform::kInvalidHandle;
    std::uint64_t mSize = 0;
    std::uint64_t mFilePosition = 0;  // of the handle: reading on needs no seek
    std::uint32_t mError = 0;
    std::uint64_t mWindowPosition = 0;
    std::uint32_t mWindowFilled = 0;
    std::array<std::uint8_t, kWindowBytes> mWindow{};
};
