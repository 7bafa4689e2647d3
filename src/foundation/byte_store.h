// clByteStore: a growable byte buffer with two cursors, the one container on the audio path.
//
// It alone takes memory from an allocator that answers null, so that a stage can refuse a block instead of
// raising: after a failed Resize or Assign the store is empty and Data() is null. A size that 32 bits can't
// name fails so too. A new block is zeroed but for what is written at once.
#pragma once

#include <cstdint>

class clByteStore {
  public:
    clByteStore() = default;
    clByteStore(const clByteStore&) = delete;
    clByteStore& operator=(const clByteStore&) = delete;
    ~clByteStore();

    std::uint8_t* Data() const { return mData; }
    std::uint32_t Size() const { return mSize; }
    std::uint32_t Capacity() const { return mCapacity; }

    // Makes room for `size` bytes. Only a new block takes the `extra` slack, and then the slack counts into
    // Size(); a block that is large enough is kept and Size() becomes `size`. `keep` saves the old bytes over
    // a new block. True when there is a block.
    bool Resize(std::uint32_t size, bool keep, std::uint32_t extra);
    // Makes room for `size` bytes, no slack, whose contents are anything: for a caller who writes them all
    // before anyone reads them. True when there is a block.
    bool ResizeToWrite(std::uint32_t size);
    // Copies `size` bytes in (none when `data` is null), never keeping the old ones. Size() becomes size +
    // extra in either case, and the cursor `size`. True when there is a block.
    bool Assign(const void* data, std::uint32_t size, std::uint32_t extra);

    // Exchanges blocks, sizes and cursors with another store.
    void Swap(clByteStore& other);

    // Both cursors are kept at or below Size(). The first is the end of the filled bytes for a writer, the
    // read position for a reader.
    std::uint32_t Cursor() const { return mCursor; }
    std::uint32_t Cursor2() const { return mCursor2; }
    void SetCursor(std::uint32_t cursor);
    void SetCursor2(std::uint32_t cursor);

  private:
    bool NeedsBlock(std::uint64_t size) const { return mCapacity == 0 || mCapacity < size; }
    void Adopt(std::uint8_t* block, std::uint64_t size);

    std::uint8_t* mData = nullptr;
    std::uint32_t mSize = 0;
    std::uint32_t mCapacity = 0;
    std::uint32_t mCursor = 0;
    std::uint32_t mCursor2 = 0;
};
