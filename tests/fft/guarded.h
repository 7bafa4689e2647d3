// An array at an odd place between values that must stay.
#pragma once

#include <algorithm>
#include <vector>

// What stands around an array must stay. The odd place also makes the array unaligned.
template <class Value>
class Guarded {
  public:
    explicit Guarded(std::size_t count) : mAll(count + 2 * kMargin, kGuard) {}
    Value* data() { return mAll.data() + kMargin; }
    bool IsWhole() const {
        const auto guards = [](auto from, auto to) { return std::count(from, to, kGuard) == kMargin; };
        return guards(mAll.begin(), mAll.begin() + kMargin) && guards(mAll.end() - kMargin, mAll.end());
    }

  private:
    static constexpr int kMargin = 67;
    static constexpr Value kGuard = 77;
    std::vector<Value> mAll;
};
