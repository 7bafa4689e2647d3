#include "modules/support/ogg_watch.h"

#include <algorithm>
#include <utility>

#include "foundation/joined.h"
#include "modules/support/property_text.h"

namespace {

// Further streams beside these are not watched: no file of sound has so many.
constexpr std::size_t kMostStreams = 64;

}  // namespace

XString clOggWatch::LookTo(std::uint64_t position) {
    clOggPage page;
    XString trouble;
    while (!mIsOver && trouble.IsEmpty() && mPages.Position() < position && mPages.Next(page))
        trouble = Check(page);
    mIsOver = mIsOver || !trouble.IsEmpty();
    return trouble;
}

XString clOggWatch::LookToEnd() {
    clOggPage page;
    XString trouble;
    while (!mIsOver && trouble.IsEmpty() && mPages.Next(page)) trouble = Check(page);
    if (mIsOver || !trouble.IsEmpty()) return trouble;
    mIsOver = true;
    if (page.skipped > 0)
        return Joined({u"its last ", NumberText(page.skipped).Text(), u" bytes are no whole page of Ogg"});
    return HaveAllEnded() ? XString() : XString(u"its last page is missing");
}

void clOggWatch::GoTo(std::uint64_t position) {
    mPages.GoTo(position - std::min<std::uint64_t>(position, clOggPage::kMostBytes));
    mStreams.clear();
    mIsAmongBeginnings = false;
    mIsFresh = true;
}

bool clOggWatch::HaveAllEnded() const {
    return std::ranges::all_of(mStreams, [](const auto& stream) { return stream.second.hasEnded; });
}

// The first streams, or those of a next part of the file, before which all others must have ended.
XString clOggWatch::CheckBeginning(const clOggPage& page) {
    XString trouble;
    if (!mIsAmongBeginnings) {
        if (!HaveAllEnded())
            trouble = Joined(
                {u"a stream has no end before that at byte ", NumberText(page.position).Text(), u" begins"});
        mStreams.clear();
    }
    mIsAmongBeginnings = true;
    return trouble;
}

XString clOggWatch::Check(const clOggPage& page) {
    const bool isFresh = std::exchange(mIsFresh, false);
    const XString position = NumberText(page.position);
    if (page.skipped > 0 && !isFresh)
        return Joined({NumberText(page.skipped).Text(), u" bytes in front of byte ", position.Text(),
                       u" are no whole page of Ogg"});
    XString trouble;
    if (page.begins) trouble = CheckBeginning(page);
    mIsAmongBeginnings = page.begins;
    const auto stream = mStreams.find(page.serial);
    if (stream != mStreams.end()) {
        if (page.number != stream->second.next)
            trouble = Joined({u"pages are missing in front of byte ", position.Text()});
        stream->second = {page.number + 1, page.ends};
    } else if (mStreams.size() < kMostStreams) {
        mStreams[page.serial] = {page.number + 1, page.ends};
    }
    return trouble;
}
