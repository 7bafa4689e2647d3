#include "modules/support/ogg_cursor.h"

#include <algorithm>
#include <limits>

namespace {

// Going through the part a dozen times, at the 2048 bytes that libraries read at once, and then some.
constexpr std::uint64_t kRounds = 12;
constexpr std::uint64_t kReadBytes = 2048;
constexpr std::uint64_t kMoreCalls = 10000;

}  // namespace

void clOggCursor::ShowOnly(const clOggPart& part) {
    mPart = part;
    BeginCall();
    Seek(0, SEEK_SET);
}

void clOggCursor::BeginCall() {
    mCallsLeft = kMoreCalls + kRounds * (Size() / kReadBytes);
}

bool clOggCursor::Read(void* to, std::size_t count, std::size_t* got) {
    *got = 0;
    mIsExhausted = mIsExhausted || mCallsLeft-- == 0;
    const std::uint64_t left = Size() - std::min(Size(), Position());
    count = static_cast<std::size_t>(std::min<std::uint64_t>(count, left));
    return !mIsExhausted && mCursor.Read(to, count, got) && (*got > 0 || count == 0);
}

bool clOggCursor::Seek(std::int64_t offset, int whence) {
    mIsExhausted = mIsExhausted || mCallsLeft-- == 0;
    std::uint64_t base = 0;
    if (whence == SEEK_CUR) base = Position();
    if (whence == SEEK_END) base = Size();
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset);  // wraps as offset's sign asks
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
    if (mIsExhausted || target > kLargest - mPart.begin) return false;
    return mCursor.Seek(static_cast<std::int64_t>(mPart.begin + target), SEEK_SET);
}
