// quaver on a terminal of its own, as the person in front of it sees it.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

class QuaverOnTerminal {
  public:
    QuaverOnTerminal(const std::vector<std::u16string>& arguments, unsigned short columns);
    ~QuaverOnTerminal();  // ends it if it still runs
    QuaverOnTerminal(const QuaverOnTerminal&) = delete;
    QuaverOnTerminal& operator=(const QuaverOnTerminal&) = delete;

    void Type(std::string_view keys);
    void Signal(int number);

    // Reads on until the text stands on the screen; false when the program ends before.
    bool ReadUntil(std::string_view text);
    bool HasEnded();
    // Reads to the end. The result is the exit code, or 128 and the signal that ended it.
    int Finish();

    const std::string& Screen() const { return mScreen; }  // all that was read

  private:
    bool Read();

    int mTerminal = -1;
    pid_t mProcess = -1;
    int mStatus = -1;
    std::string mScreen;
};
