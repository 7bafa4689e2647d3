// clOggCursor: one part of a file for a library, as if there were nothing else.
#pragma once

#include "modules/support/ogg_parts.h"
#include "modules/support/read_cursor.h"

class clOggCursor {
  public:
    explicit clOggCursor(clFileReader& file) : mCursor(file) {}

    void ShowOnly(const clOggPart& part);
    // A call of the library begins, during which it may read and seek a good deal; with more than that it
    // goes round in circles, and all that follows fails.
    void BeginCall();
    bool IsExhausted() const { return mIsExhausted; }

    // As clReadCursor's, with positions in the part. A read also fails where the file has become shorter.
    bool Read(void* to, std::size_t count, std::size_t* got);
    bool Seek(std::int64_t offset, int whence);
    std::uint64_t Position() const { return mCursor.Position() - mPart.begin; }

  private:
    std::uint64_t Size() const { return mPart.end - mPart.begin; }

    clReadCursor mCursor;
    clOggPart mPart{0, 0};
    std::uint64_t mCallsLeft = 0;
    bool mIsExhausted = false;
};
