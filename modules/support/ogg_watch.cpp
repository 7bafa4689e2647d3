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
    const XString position = NumberText(page.position);
    if (!mIsAmongBeginnings) {
        if (!HaveAllEnded())
            return Joined({u"a stream has no end before that at byte ", position.Text(), u" begins"});
        if (mStreams.contains(page.serial))
            return Joined(
                {u"the stream that begins at byte ", position.Text(), u" has the number of that before it"});
        mStreams.clear();
    }
    return XString();
}

XString clOggWatch::Check(const clOggPage& page) {
    const bool isFresh = std::exchange(mIsFresh, false);
    const XString position = NumberText(page.position);
    if (page.skipped > 0 && !isFresh)
        return Joined({NumberText(page.skipped).Text(), u" bytes in front of byte ", position.Text(),
                       u" are no whole page of Ogg"});
    if (page.begins) {
        const XString trouble = CheckBeginning(page);
        if (!trouble.IsEmpty()) return trouble;
    }
    mIsAmongBeginnings = page.begins;
    const auto stream = mStreams.find(page.serial);
    const bool isMissed = stream != mStreams.end() && page.number != stream->second.next;
    if (isMissed) return Joined({u"pages are missing in front of byte ", position.Text()});
    if (stream != mStreams.end() || mStreams.size() < kMostStreams)
        mStreams[page.serial] = {page.number + 1, page.ends};
    return XString();
}
