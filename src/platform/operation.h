// Operation: a call to the operating system that a test can replace.
//
// Every operation of the seam is one constant-initialised object of this type, defined by the platform's own
// side with its native function. Callers write platform::ReadFile(...) as they would for the function itself;
// the cost is one indirect call. A test substitutes a function of its own to look at the arguments, to count,
// to turn the clock or to fail the n-th call (tests/support/faults.h). Substitution and calls may come from
// different threads.
#pragma once

#include <atomic>

namespace platform {

template <class Signature>
class Operation;

template <class Result, class... Arguments>
class Operation<Result(Arguments...)> {
  public:
    using Function = Result (*)(Arguments...);

    constexpr explicit Operation(Function native) : mNative(native), mCurrent(native) {}
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    Result operator()(Arguments... arguments) const {
        return mCurrent.load(std::memory_order_acquire)(arguments...);
    }

    // What the platform itself does, whatever stands in its place just now.
    Function Native() const { return mNative; }

    // Puts `function` in place of the native one; null brings the native one back. For tests.
    void Substitute(Function function) {
        mCurrent.store(function ? function : mNative, std::memory_order_release);
    }

  private:
    const Function mNative;
    std::atomic<Function> mCurrent;
};

}  // namespace platform
