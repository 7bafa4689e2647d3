// clOggPages: the pages of an Ogg file, one after the other, each with a check sum that holds.
//
// Bytes that belong to no such page are passed over and counted.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/wide_string.h"
#include "modules/support/file_reader.h"

struct clOggPage {
    static constexpr std::uint32_t kHeadBytes = 27;
    static constexpr std::uint32_t kMostBytes = kHeadBytes + 255 + 255 * 255;

    std::uint64_t position = 0;  // of its first byte
    std::uint64_t skipped = 0;   // bytes in front of it that belong to no page
    std::uint32_t serial = 0;    // of the stream that it is a part of
    std::uint32_t number = 0;    // within that stream
    std::int64_t granule = -1;   // where the last packet that ends here ends; -1 when none does
    bool begins = false, ends = false;
    std::span<const std::uint8_t> lacing;  // lengths of the pieces of its body
    std::span<const std::uint8_t> body;    // both stand until the next call

    std::uint64_t End() const { return position + kHeadBytes + lacing.size() + body.size(); }
};

class clOggPages {
  public:
    // The reader stays open as long as this is used.
    explicit clOggPages(clFileReader& file) : mFile(file) {}

    // The next page is the first whole one from here on.
    void GoTo(std::uint64_t position) { mPosition = position; }
    // Behind the last page.
    std::uint64_t Position() const { return mPosition; }
    // False at the end of the file, with what was passed over in front of that, and when reading failed: the
    // reader's Error() tells the two apart.
    bool Next(clOggPage& page);

  private:
    std::span<const std::uint8_t> Look(std::uint32_t count);
    bool FindMark();
    bool ReadPage(clOggPage& page);

    clFileReader& mFile;
    std::uint64_t mPosition = 0;
    std::vector<std::uint8_t> mWindow;
    std::uint64_t mWindowPosition = 0;
};

// Names what the streams at the beginning of a file hold: "Opus", "Theora and Vorbis". Empty when it doesn't
// begin as Ogg files do.
XString OggContents(clFileReader& file);
