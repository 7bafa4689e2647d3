// Reporter: Quavercore's two streams, which the host reads.
//
// Text is UTF-16, each line ends in CR LF and goes out in one write, so that the host never sees half a
// message because of us. A line end within a text, as a file name may hold one, becomes blanks: what looks
// like a line of ours is one. A host that no longer reads is no reason to stop: failed writes are ignored.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "platform/types.h"

class Reporter {
  public:
    Reporter();

    // For the host's error and information text.
    void Error(std::u16string_view text);
    void Error(std::u16string_view what, std::u16string_view name);  // what 'name'
    void Information(std::u16string_view text);

    // Messages for the host's progress display.
    void Percent(int percent);  // sent when it has risen
    void Action(std::u16string_view action, std::u16string_view input, std::u16string_view output);

    platform::Handle InformationStream() const { return mOutput; }

  private:
    void Message(std::u16string_view key, std::u16string_view value);
    void Line(platform::Handle stream, std::u16string_view text);

    const platform::Handle mOutput;
    const platform::Handle mError;
    std::mutex mLock;
    int mPercent = -1;
};
