#include "platform/posix/event.h"

#include <linux/futex.h>
#include <sys/syscall.h>

#include <climits>

#include "platform/posix/native_error.h"
#include "platform/synchronisation.h"

namespace platform::posix {

namespace {

static_assert(sizeof(EventWord) == 4 && EventWord::is_always_lock_free,
              "the kernel looks at the word itself");

constexpr bool IsSet(std::uint32_t word) {
    return word & 1;
}

// Sleeps while the word holds `expected`; wakes early for no reason now and then.
void SleepOn(EventWord* word, std::uint32_t expected, const Deadline& deadline) {
    timespec end{};
    if (deadline) {
        using namespace std::chrono;
        const auto whole = floor<seconds>(*deadline);
        end.tv_sec = whole.time_since_epoch().count();
        end.tv_nsec = nanoseconds(*deadline - whole).count();
    }
    syscall(SYS_futex, word, FUTEX_WAIT_BITSET, expected, deadline ? &end : nullptr, nullptr,
            FUTEX_BITSET_MATCH_ANY);
}

}  // namespace

void Event::Set() {
    std::uint32_t word = mWord->load();
    do {
        if (IsSet(word)) return;
    } while (!mWord->compare_exchange_weak(word, word + 3));
    syscall(SYS_futex, mWord, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

void Event::Reset() {
    mWord->fetch_and(~1u);
}

std::uint32_t Event::Wait(const Deadline& deadline) {
    const std::uint32_t first = mWord->load();
    for (std::uint32_t word = first; !IsSet(word) && word == first; word = mWord->load()) {
        if (deadline && Clock::now() >= *deadline) return kWaitTimeout;
        SleepOn(mWord, word, deadline);
    }
    return kWaitObject;
}

}  // namespace platform::posix
