#include "foundation/pointer_array.h"

#include <algorithm>
#include <limits>
#include <new>

XPointerArray::~XPointerArray() {
    if (mItems != mInline) delete[] mItems;
}

void XPointerArray::Insert(std::int32_t index, void* item) {
    if (mCount == mCapacity) Grow();
    if (index < 0 || index > mCount) index = mCount;
    std::copy_backward(mItems + index, mItems + mCount, mItems + mCount + 1);
    mItems[index] = item;
    ++mCount;
}

void XPointerArray::RemoveAt(std::int32_t index) {
    if (index < 0 || index >= mCount) return;
    std::copy(mItems + index + 1, mItems + mCount, mItems + index);
    --mCount;
}

void XPointerArray::Swap(std::int32_t first, std::int32_t second) {
    std::swap(mItems[first], mItems[second]);
}

void XPointerArray::Clear() {
    if (mItems != mInline) delete[] mItems;
    mItems = nullptr;
    mCount = 0;
    mCapacity = 0;
    mGrowth = kFirstGrowth;
}

void XPointerArray::Grow() {
    const std::int64_t capacity = std::int64_t{mCapacity} + mGrowth;
    if (capacity > std::numeric_limits<std::int32_t>::max()) throw std::bad_array_new_length();
    void** const items = new void*[static_cast<std::size_t>(capacity)];
    std::copy(mItems, mItems + mCount, items);
    if (mItems != mInline) delete[] mItems;
    mItems = items;
    mCapacity = static_cast<std::int32_t>(capacity);
    mGrowth = std::min(mGrowth * 2, kLargestGrowth);
}
