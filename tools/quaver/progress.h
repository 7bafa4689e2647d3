// Progress: how far a conversion has come, for the person who waits.
//
// On a terminal one line is redrawn: a bar, the percentage, the speed in source bytes a second, the time
// left. Elsewhere a plain line is written at every tenth of the way, so that a log stays readable.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/types.h"

class Progress {
  public:
    Progress(platform::Handle stream, std::uint64_t sourceBytes);

    void Show(std::uint32_t percent);
    // Takes the line off the terminal, so that other text can stand there.
    void Clear();

  private:
    void Redraw(std::uint32_t percent, const std::u16string& figures);
    std::u16string Figures(std::uint32_t percent) const;

    const platform::Handle mStream;
    const std::uint32_t mWidth;  // 0 when the stream is no terminal
    const std::uint64_t mSourceBytes;
    const std::chrono::steady_clock::time_point mStart;
    std::uint32_t mShownTenth = 0;
    std::u16string mLine;
};
