// A file opened through the seam for the length of a scope.
#pragma once

#include <string>

#include "platform/file.h"

class OpenFile {
  public:
    OpenFile(const std::u16string& path, std::uint32_t access, std::uint32_t disposition)
        : mHandle(platform::CreateFileW(path.c_str(), access, platform::kShareRead | platform::kShareWrite,
                                        disposition, platform::kAttributeNormal)) {}
    ~OpenFile() {
        if (platform::IsOpen(mHandle)) platform::CloseHandle(mHandle);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    operator platform::Handle() const { return mHandle; }

  private:
    platform::Handle mHandle;
};
