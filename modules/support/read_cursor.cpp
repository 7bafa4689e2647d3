#include "modules/support/read_cursor.h"

#include <algorithm>
#include <limits>

bool clReadCursor::Read(void* to, std::size_t count, std::size_t* got) {
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    *got = 0;
    while (*got < count) {
        const auto wanted = static_cast<std::uint32_t>(std::min(count - *got, kMost));
        std::uint32_t piece = 0;
        if (!mFile.Read(mPosition, static_cast<std::uint8_t*>(to) + *got, wanted, &piece)) return false;
        mPosition += piece;
        *got += piece;
        if (piece < wanted) break;
    }
    return true;
}

bool clReadCursor::Seek(std::int64_t offset, int whence) {
    std::uint64_t base = 0;
    if (whence == SEEK_CUR) base = mPosition;
    if (whence == SEEK_END) base = mFile.Size();
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset);  // wraps as offset's sign asks
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
    if (base > kLargest || target > kLargest) return false;
    mPosition = target;
    return true;
}
