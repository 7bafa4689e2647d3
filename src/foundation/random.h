// XRandom: the process-wide source of random numbers, a Mersenne twister (MT19937: M. Matsumoto and T.
// Nishimura, "Mersenne twister", ACM TOMACS 8, 1998).
#pragma once

#include <cstdint>
#include <mutex>

class XRandom {
  public:
    XRandom();                             // seeded from the clock
    explicit XRandom(std::uint32_t seed);  // the generator's standard initialisation

    // A number below `limit`; limit 0 gives all 32 bits. From any thread.
    std::uint32_t Next(std::uint32_t limit);

    // The one that all share, seeded when it is first asked for; the library asks when it is loaded.
    static XRandom& Shared();

  private:
    static constexpr int kWords = 624;

    std::uint32_t Draw();
    void Renew();

    std::mutex mLock;
    std::uint32_t mState[kWords];
    int mIndex = kWords;
};
