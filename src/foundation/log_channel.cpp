// Drains: the few channels that have nobody to read them while their writer writes.
//
// No piece is larger than the smallest pipe (4096 bytes on Windows) can take when it is empty, and the drain
// before it empties the pipe. The lock is held from one to the other, so that no other line takes the room in
// between, and whoever takes a drain back knows that it is not running. Where there is no drain, which is the
// usual case, all of this costs one load.
#include "foundation/log_channel.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/file.h"

namespace log_channel {

namespace {

constexpr std::size_t kLargestPiece = 2048;

struct Entry {
    platform::Handle channel;
    XLog::Drain drain;
    void* user;
};

std::mutex gDrainLock;
std::vector<Entry> gDrains;
std::atomic<std::size_t> gDrainCount = 0;

void WriteBytes(platform::Handle channel, const char* bytes, std::size_t count) {
    std::uint32_t written = 0;
    platform::WriteFile(channel, bytes, static_cast<std::uint32_t>(count), &written);
}

// False when the channel has no drain.
bool WriteDrained(platform::Handle channel, const char* bytes, std::size_t count) {
    const std::lock_guard lock(gDrainLock);
    const auto entry = std::find_if(gDrains.begin(), gDrains.end(),
                                    [channel](const Entry& each) { return each.channel == channel; });
    if (entry == gDrains.end()) return false;
    for (std::size_t done = 0; done < count; done += kLargestPiece) {
        entry->drain(entry->user);
        WriteBytes(channel, bytes + done, std::min(count - done, kLargestPiece));
    }
    return true;
}

}  // namespace

void Write(platform::Handle channel, const XString& line) {
    const auto* bytes = reinterpret_cast<const char*>(line.Text());
    const std::size_t count = static_cast<std::size_t>(line.Length()) * sizeof(char16_t);
    if (gDrainCount.load(std::memory_order_acquire) > 0 && WriteDrained(channel, bytes, count)) return;
    WriteBytes(channel, bytes, count);
}

void SetDrain(platform::Handle channel, XLog::Drain drain, void* user) {
    const std::lock_guard lock(gDrainLock);
    std::erase_if(gDrains, [channel](const Entry& each) { return each.channel == channel; });
    if (drain) gDrains.push_back({channel, drain, user});
    gDrainCount.store(gDrains.size(), std::memory_order_release);
}

}  // namespace log_channel
