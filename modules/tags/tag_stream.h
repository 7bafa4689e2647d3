// clTagStream: a file as TagLib sees it, changed without a byte of it being written.
//
// A list of pieces stands for the contents: stretches of the old file, and stretches of what was put in
// since. An insertion at the front of a large file, for which TagLib would move all of it, is one more piece;
// the new file is written from front to end once, when it is known how it ends (WriteTo). Positions are of 64
// bits inside. TagLib's own are `long`, which has 32 bits on Windows: there it sees the first 2 GiB of a
// larger file, and such a file must not be changed (IsWhole).
#pragma once

#include <taglib/tiostream.h>

#include <cstdint>
#include <string>
#include <vector>

#include "modules/support/file_reader.h"
#include "modules/support/file_writer.h"

class clTagStream : public TagLib::IOStream {
  public:
    // The reader stays open as long as the stream is used. What can't be read stays in its Error().
    explicit clTagStream(clFileReader& file);

    bool IsWhole() const;
    bool IsChanged() const { return mIsChanged; }
    std::uint64_t Size() const { return mPieces.empty() ? 0 : mPieces.back().start + mPieces.back().length; }
    // False when reading or writing failed; both remember why.
    bool WriteTo(clFileWriter& writer) const;

    TagLib::FileName name() const override;
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector& data) override;
    void insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) override;
    void removeBlock(unsigned long start, unsigned long length) override;
    bool readOnly() const override { return false; }
    bool isOpen() const override { return mFile.IsOpen(); }
    void seek(long offset, Position from) override;
    long tell() const override;
    long length() override;
    void truncate(long length) override;

  private:
    struct Piece {
        std::uint64_t start;   // where it stands
        std::uint64_t length;  // never 0
        bool isAdded;          // from mAdded rather than from the file
        std::uint64_t source;
    };

    std::size_t SplitAt(std::uint64_t position);
    void Replace(std::uint64_t start, std::uint64_t length, const TagLib::ByteVector& data);
    bool Fetch(const Piece& piece, std::uint64_t offset, char* to, std::uint32_t count) const;

    clFileReader& mFile;
    std::vector<Piece> mPieces;  // by start, without gaps
    std::string mAdded;
    std::uint64_t mPosition = 0;
    bool mIsChanged = false;
};
