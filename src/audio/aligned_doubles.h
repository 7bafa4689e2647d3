// Doubles that begin at a multiple of 64 bytes, as wide vectors are read fastest.
#pragma once

#include <cstddef>
#include <vector>

class clAlignedDoubles {
  public:
    // So many zeros. Raises when there is no memory.
    void Assign(std::size_t size) {
        mLines.assign((size + kPerLine - 1) / kPerLine, {});
        mSize = size;
    }

    double* Data() { return mLines.empty() ? nullptr : mLines.front().values; }
    const double* Data() const { return mLines.empty() ? nullptr : mLines.front().values; }
    std::size_t Size() const { return mSize; }

  private:
    static constexpr std::size_t kPerLine = 8;
    struct alignas(64) Line {
        double values[kPerLine];
    };

    std::vector<Line> mLines;
    std::size_t mSize = 0;
};
