// XPointerArray: pointers in order, the first 16 inside the object, a doubling step from then on.
//
// The array never owns what its pointers name. Growth raises the allocator's exception; nothing else fails.
#pragma once

#include <cstdint>

class XPointerArray {
  public:
    static constexpr std::int32_t kInlineItems = 16;
    static constexpr std::int32_t kFirstGrowth = 32;
    static constexpr std::int32_t kLargestGrowth = 500000;

    XPointerArray() = default;
    XPointerArray(const XPointerArray&) = delete;
    XPointerArray& operator=(const XPointerArray&) = delete;
    ~XPointerArray();

    std::int32_t Count() const { return mCount; }
    std::int32_t Capacity() const { return mCapacity; }
    std::int32_t Growth() const { return mGrowth; }
    void* At(std::int32_t index) const { return mItems[index]; }  // 0 to Count() - 1

    // An index of -1 or above Count() appends.
    void Insert(std::int32_t index, void* item);
    void Append(void* item) { Insert(-1, item); }
    void RemoveAt(std::int32_t index);  // outside 0 to Count() - 1 nothing happens
    void Swap(std::int32_t first, std::int32_t second);
    // Empties the array. The inline room is not taken up again: the next insertion allocates 32.
    void Clear();

  private:
    void Grow();

    void** mItems = mInline;
    std::int32_t mCount = 0;
    std::int32_t mCapacity = kInlineItems;
    std::int32_t mGrowth = kFirstGrowth;
    void* mInline[kInlineItems] = {};
};
