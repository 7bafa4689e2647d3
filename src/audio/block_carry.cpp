// The store grows by a tenth more than is asked for, so that a queue fed with small blocks is moved seldom.
// It is replaced only once the bytes stand in the new one: where memory fails, what waits is left as it is.
#include "audio/block_carry.h"

#include <algorithm>
#include <cstring>
#include <limits>

bool clBlockCarry::Append(const clAudioBlock& block, bool adopt) {
    const std::uint32_t fresh = block.data ? block.bytes - block.offset : 0;
    if (block.format->wBitsPerSample != 0) setFormat(block.format);
    if (heldBytes == 0) Clear();
    if (fresh == 0) return true;
    if (heldBytes == 0 && adopt) {
        data = block.data;
        adopted = 1;
    } else {
        if (!Settle(std::uint64_t{heldBytes} + fresh)) return false;
        std::memcpy(store.Data() + heldBytes, block.data, fresh);
    }
    heldBytes += fresh;
    return true;
}

clAudioBlock& clBlockCarry::Take(std::uint32_t count) {
    const std::uint32_t taken = std::min(count, heldBytes);
    view.Borrow(data + offset, taken, format);
    heldBytes -= taken;
    offset += taken;
    return view;
}

void clBlockCarry::GiveBack(std::uint32_t count) {
    const std::uint32_t returned = std::min(count, offset);
    heldBytes += returned;
    offset -= returned;
}

void clBlockCarry::Compact(std::uint32_t extra) {
    if (!Own(extra) && adopted) Clear();
}

bool clBlockCarry::Own(std::uint32_t extra) {
    return heldBytes == 0 || Settle(adopted ? std::uint64_t{heldBytes} + extra : heldBytes);
}

void clBlockCarry::Clear() {
    data = nullptr;
    heldBytes = offset = 0;
    adopted = 0;
}

// Brings the waiting bytes to the start of the store, which then has this much room. False, with nothing
// changed, when there is no memory or 32 bits can't count it.
bool clBlockCarry::Settle(std::uint64_t room) {
    if (room > std::numeric_limits<std::uint32_t>::max()) return false;
    const auto size = static_cast<std::uint32_t>(room);
    clByteStore larger;
    const bool fits = store.Capacity() != 0 && store.Capacity() >= size;
    clByteStore& home = fits ? store : larger;
    if (!home.Resize(size, false, fits ? 0 : size / 10)) return false;
    if (heldBytes != 0 && data + offset != home.Data()) std::memmove(home.Data(), data + offset, heldBytes);
    if (!fits) store.Swap(larger);
    data = store.Data();
    offset = 0;
    adopted = 0;
    return true;
}
