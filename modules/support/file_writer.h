// clFileWriter: a new file written from front to end, of which any part can be written again.
//
// Blocks pass straight to the platform. The first failure sticks: every later call fails without touching the
// file, so that a caller may look at the result once, at the end.
#pragma once

#include <cstdint>

#include "platform/types.h"

class clFileWriter {
  public:
    clFileWriter() = default;
    clFileWriter(const clFileWriter&) = delete;
    clFileWriter& operator=(const clFileWriter&) = delete;
    ~clFileWriter() { Close(); }

    // Creates the file, or empties the one that has its name.
    bool Create(const char16_t* path);
    bool Append(const void* data, std::uint32_t count);
    // Writes over bytes that stand there already, and goes on appending behind the end.
    bool Rewrite(std::uint64_t position, const void* data, std::uint32_t count);
    bool Flush();                                 // waits until all of it has reached the disk
    std::uint64_t Size() const { return mSize; }  // of what has been appended
    // True when everything up to here went well, closing included. Closing again fails.
    bool Close();

    bool IsOpen() const { return platform::IsOpen(mHandle); }
    // The platform's number of the first failure since Create; 0 for none.
    std::uint32_t Error() const { return mError; }

  private:
    bool Check(bool success);
    bool Write(const void* data, std::uint32_t count);
    bool SeekTo(std::uint64_t position);

    platform::Handle mHandle = platform::kInvalidHandle;
    std::uint64_t mSize = 0;
    std::uint32_t mError = 0;
};
