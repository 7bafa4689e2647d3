// The converter's end of the agreement, for the children that play it.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "platform/types.h"

class ConverterSide {
  public:
    ConverterSide(int argc, char** argv);
    ~ConverterSide();
    ConverterSide(const ConverterSide&) = delete;
    ConverterSide& operator=(const ConverterSide&) = delete;

    void Say(std::u16string_view text) const;  // on the output stream, as it stands
    void SayBytes(const void* bytes, std::size_t first,
                  std::size_t end) const;           // the bytes from first to end
    void Complain(std::u16string_view text) const;  // on the error stream
    void OpenEvents();
    void SignLife() const;
    bool WaitForCancel() const;  // these wait at most a minute, so that no child outlives its test for long
    bool WaitFor(const char* argument) const;
    void Tell(const char* argument) const;  // sets the event that the argument names
    bool IsSet(const char* argument) const;
    void Clear(const char* argument) const;
    std::u16string Argument(const char* name) const;

  private:
    platform::Handle Event(const char* argument) const;
    std::u16string Switch(const std::u16string& name) const;

    int mCount;
    char** mArguments;
    std::u16string mCommand;
    mutable std::map<std::string, platform::Handle> mEvents;
    platform::Handle mOutput, mError;
    platform::Handle mCancel = platform::kNullHandle, mWatchdog = platform::kNullHandle;
};
