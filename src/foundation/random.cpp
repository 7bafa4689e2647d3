// The twister yields 32-bit words; its 624 words of state are renewed all at once when they are used up. A
// word becomes a number below a limit by way of a float between 1 and 2 that has the word for its fraction.
#include "foundation/random.h"

#include <algorithm>
#include <bit>

#include "platform/clock.h"

namespace {

constexpr int kOffset = 397;
constexpr std::uint32_t kMatrix = 0x9908B0DF;
constexpr std::uint32_t kUpperBit = 0x80000000;

// A mix of the time of day and the counters: no secret, only unlikely to be the same twice.
std::uint32_t ClockSeed() {
    platform::SystemTime now;
    platform::GetSystemTime(&now);
    std::uint32_t seed = 0;
    for (const std::uint32_t part : {now.year, now.hour, now.minute, now.second, now.millisecond})
        seed += part * part;
    std::int64_t counter = 0;
    if (platform::QueryPerformanceCounter(&counter)) {
        const auto words = static_cast<std::uint64_t>(counter);
        seed = seed * static_cast<std::uint32_t>(words) + static_cast<std::uint32_t>(words >> 32);
    }
    return seed + platform::GetTickCount();
}

std::uint32_t Temper(std::uint32_t word) {
    word ^= word >> 11;
    word ^= (word << 7) & 0x9D2C5680;
    word ^= (word << 15) & 0xEFC60000;
    return word ^ (word >> 18);
}

std::uint32_t Below(std::uint32_t limit, std::uint32_t word) {
    constexpr std::uint64_t kOne = std::uint64_t{0x3FF00000} << 32;
    const double fraction = std::bit_cast<double>(kOne | (std::uint64_t{word} << 20)) - 1.0;
    return std::min(static_cast<std::uint32_t>(fraction * limit), limit - 1);
}

}  // namespace

XRandom::XRandom() : XRandom(ClockSeed()) {}

XRandom::XRandom(std::uint32_t seed) {
    mState[0] = seed;
    for (std::uint32_t i = 1; i < kWords; ++i)
        mState[i] = 1812433253 * (mState[i - 1] ^ (mState[i - 1] >> 30)) + i;
}

std::uint32_t XRandom::Next(std::uint32_t limit) {
    const std::lock_guard lock(mLock);
    const std::uint32_t word = Draw();
    return limit == 0 ? word : Below(limit, word);
}

XRandom& XRandom::Shared() {
    static XRandom shared;
    return shared;
}

std::uint32_t XRandom::Draw() {
    if (mIndex == kWords) Renew();
    return Temper(mState[mIndex++]);
}

void XRandom::Renew() {
    for (int i = 0; i < kWords; ++i) {
        const std::uint32_t joined = (mState[i] & kUpperBit) | (mState[(i + 1) % kWords] & ~kUpperBit);
        const std::uint32_t twist = (joined & 1) != 0 ? kMatrix : 0;
        mState[i] = mState[(i + kOffset) % kWords] ^ (joined >> 1) ^ twist;
    }
    mIndex = 0;
}
