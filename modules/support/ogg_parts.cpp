// A part is recognised by the serial numbers of its streams. Its end is sought in longer and longer leaps,
// then by halves: so a file of one part costs two looks at it, however long, and a short part no leap at all.
#include "modules/support/ogg_parts.h"

#include <algorithm>

#include "modules/support/ogg_page.h"

namespace {

constexpr std::size_t kMostStreams = 64;  // of one part that are known again

class clPartFinder {
  public:
    explicit clPartFinder(clFileReader& file) : mFile(file), mPages(file) {}

    std::uint64_t EndOf(std::uint64_t begin) {
        std::uint64_t own = TakeSerials(begin), others = mFile.Size();
        if (HasLastPage()) return others;
        Leap(own, others);
        while (others > own + clOggPage::kMostBytes) Look(own + (others - own) / 2, own, others);
        return Walk(own);
    }

  private:
    bool IsOwn(const clOggPage& page) const {
        return std::ranges::find(mSerials, page.serial) != mSerials.end();
    }

    // Those of the pages that begin a stream, or of the first page if that doesn't. The result is the end of
    // the first page.
    std::uint64_t TakeSerials(std::uint64_t begin) {
        clOggPage page;
        mSerials.clear();
        mPages.GoTo(begin);
        std::uint64_t end = mFile.Size();
        while (mPages.Next(page) && (mSerials.empty() || page.begins) && mSerials.size() < kMostStreams) {
            if (mSerials.empty()) end = page.End();
            mSerials.push_back(page.serial);
            if (!page.begins) break;
        }
        return end;
    }

    bool HasLastPage() {
        clOggPage page;
        bool isOwn = false;
        mPages.GoTo(mFile.Size() - std::min<std::uint64_t>(mFile.Size(), clOggPage::kMostBytes));
        while (mPages.Next(page)) isOwn = IsOwn(page);
        return isOwn;
    }

    // The first page from `position` on belongs to the part: `own` is its end then. Otherwise `others` is the
    // position.
    bool Look(std::uint64_t position, std::uint64_t& own, std::uint64_t& others) {
        clOggPage page;
        mPages.GoTo(position);
        const bool isOwn = mPages.Next(page) && IsOwn(page) && page.position < others;
        (isOwn ? own : others) = isOwn ? page.End() : position;
        return isOwn;
    }

    void Leap(std::uint64_t& own, std::uint64_t& others) {
        std::uint64_t step = clOggPage::kMostBytes;
        while (others > own + step && Look(own + step, own, others)) step *= 2;
    }

    // Page by page, to the first one of another part.
    std::uint64_t Walk(std::uint64_t own) {
        clOggPage page;
        mPages.GoTo(own);
        while (mPages.Next(page) && IsOwn(page)) {
        }
        return page.position;
    }

    clFileReader& mFile;
    clOggPages mPages;
    std::vector<std::uint32_t> mSerials;
};

}  // namespace

std::vector<clOggPart> FindOggParts(clFileReader& file, std::size_t most) {
    clPartFinder finder(file);
    std::vector<clOggPart> parts;
    std::uint64_t begin = 0;
    do {
        parts.push_back({begin, finder.EndOf(begin)});
        begin = parts.back().end;
    } while (begin < file.Size() && parts.size() < most && file.Error() == 0);
    return parts;
}
