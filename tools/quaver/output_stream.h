// OutputStream: where audio or a picture goes, standard output or a file.
//
// A file is written under a name of its own beside the destination and takes the destination's name when it is
// complete. Without Commit it goes, and what stood there before stays.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/types.h"

class OutputStream {
  public:
    explicit OutputStream(std::u16string destination);  // empty: standard output
    ~OutputStream();
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    bool IsFile() const { return !mDestination.empty(); }

    // Each is false when the system refuses.
    bool Open();
    bool Write(std::string_view bytes);
    bool Rewrite(std::string_view bytes);  // from the start of a file, over what stands there
    bool Commit();

  private:
    bool CreateTemporary();
    void Close();

    const std::u16string mDestination;
    std::u16string mTemporary;
    platform::Handle mHandle = platform::kInvalidHandle;
};
