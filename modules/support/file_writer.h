// clFileWriter: a new file written from front to end, whose beginning can be written again.
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
    // Writes over the file's first bytes. Nothing may be appended afterwards.
    bool Rewrite(const void* data, std::uint32_t count);
    // True when everything up to here went well, closing included. Closing again fails.
    bool Close();

    bool IsOpen() const { return platform::IsOpen(mHandle); }
    // The platform's number of the first failure since Create; 0 for none.
    std::uint32_t Error() const { return mError; }

  private:
    bool Check(bool success);

    platform::Handle mHandle = platform::kInvalidHandle;
    std::uint32_t mError = 0;
};
