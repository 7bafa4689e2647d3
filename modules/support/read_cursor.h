// clReadCursor: a place in a file, for libraries that read through callbacks and seek as C files do.
#pragma once

#include <cstdint>
#include <cstdio>

#include "modules/support/file_reader.h"

class clReadCursor {
  public:
    explicit clReadCursor(clFileReader& file) : mFile(file) {}

    // Up to `count` bytes; *got is less only at the end of the file or on failure. False on failure.
    bool Read(void* to, std::size_t count, std::size_t* got);
    // By SEEK_SET, SEEK_CUR or SEEK_END. False, and nothing moves, for a place before the beginning.
    bool Seek(std::int64_t offset, int whence);

    std::uint64_t Position() const { return mPosition; }
    std::uint64_t Size() const { return mFile.Size(); }
    bool IsAtEnd() const { return mPosition >= mFile.Size(); }

  private:
    clFileReader& mFile;
    std::uint64_t mPosition = 0;
};
