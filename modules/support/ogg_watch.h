// clOggWatch: what is wrong with the pages of an Ogg file.
//
// Libraries pass over damage, and which of it they notice depends on where it is. So the pages are looked at
// once more beside the decoding, as far as that has come: each with its check sum, the numbers without a gap,
// and every stream with an end.
#pragma once

#include <map>

#include "modules/support/ogg_page.h"

class clOggWatch {
  public:
    // The reader stays open as long as this is used.
    explicit clOggWatch(clFileReader& file) : mPages(file) {}

    // Looks at the pages that begin in front of `position`. What is wrong, in words to stand behind a file's
    // name, or empty. After the first trouble nothing more is looked at.
    XString LookTo(std::uint64_t position);
    // Looks at all that is left, and whether it is complete.
    XString LookToEnd();
    // Goes on elsewhere: a little in front of `position`, so that one page at least will be looked at.
    void GoTo(std::uint64_t position);

  private:
    struct Stream {
        std::uint32_t next;  // number of a page
        bool hasEnded;
    };

    XString Check(const clOggPage& page);
    XString CheckBeginning(const clOggPage& page);
    bool HaveAllEnded() const;

    clOggPages mPages;
    std::map<std::uint32_t, Stream> mStreams;  // those that run side by side, by serial number
    bool mIsAmongBeginnings = true;            // no page yet but the first ones of streams
    bool mIsFresh = false;                     // just gone elsewhere
    bool mIsOver = false;
};
