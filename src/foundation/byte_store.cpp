#include "foundation/byte_store.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace {

// Null when there is no memory or 32 bits can't name the size. Zeroed behind the bytes that are written next:
// stores are filled by modules and handed to other modules and to hosts, and what none of them wrote must not
// show what the memory held before.
std::uint8_t* NewBlock(std::uint64_t size, std::uint64_t written) {
    if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    const std::uint64_t count = std::max<std::uint64_t>(size, 1);
    auto* const block = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(count)];
    if (block) std::memset(block + written, 0, static_cast<std::size_t>(count - written));
    return block;
}

}  // namespace

clByteStore::~clByteStore() {
    delete[] mData;
}

bool clByteStore::Resize(std::uint32_t size, bool keep, std::uint32_t extra) {
    if (!NeedsBlock(size)) {
        mSize = size;
    } else {
        const std::uint64_t full = std::uint64_t{size} + extra;
        const std::uint64_t kept = keep ? std::min<std::uint64_t>(full, mSize) : 0;
        std::uint8_t* const block = NewBlock(full, kept);
        if (kept > 0 && block) std::memcpy(block, mData, static_cast<std::size_t>(kept));
        Adopt(block, full);
    }
    SetCursor(mCursor);
    SetCursor2(mCursor2);
    return mData != nullptr;
}

bool clByteStore::ResizeToWrite(std::uint32_t size) {
    if (NeedsBlock(size)) {
        Adopt(NewBlock(size, size), size);
    } else {
        mSize = size;
    }
    SetCursor(mCursor);
    SetCursor2(mCursor2);
    return mData != nullptr;
}

bool clByteStore::Assign(const void* data, std::uint32_t size, std::uint32_t extra) {
    const std::uint64_t full = std::uint64_t{size} + extra;
    if (!NeedsBlock(full)) {
        if (data) std::memmove(mData, data, size);
        mSize = static_cast<std::uint32_t>(full);
    } else {
        std::uint8_t* const block = NewBlock(full, data ? size : 0);
        if (data && block)
            std::memcpy(block, data, size);  // before the old block goes, which may hold the data
        Adopt(block, full);
    }
    SetCursor(size);
    SetCursor2(mCursor2);
    return mData != nullptr;
}

void clByteStore::Swap(clByteStore& other) {
    std::swap(mData, other.mData);
    std::swap(mSize, other.mSize);
    std::swap(mCapacity, other.mCapacity);
    std::swap(mCursor, other.mCursor);
    std::swap(mCursor2, other.mCursor2);
}

void clByteStore::SetCursor(std::uint32_t cursor) {
    mCursor = std::min(cursor, mSize);
}

void clByteStore::SetCursor2(std::uint32_t cursor) {
    mCursor2 = std::min(cursor, mSize);
}

// The block replaces the old one; null leaves the store empty.
void clByteStore::Adopt(std::uint8_t* block, std::uint64_t size) {
    delete[] mData;
    mData = block;
    mSize = block ? static_cast<std::uint32_t>(size) : 0;
    mCapacity = block ? std::max<std::uint32_t>(mSize, 1) : 0;
}
