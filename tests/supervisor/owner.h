// What stands around a CPUEncoder in a test: its owner with the three log channels, a converter that is a
// child of the test program, events to walk hand in hand with that child, and a clock that the test turns.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/id_tag_list.h"
#include "platform/clock.h"
#include "platform/process.h"
#include "supervisor/cpu_encoder.h"
#include "supervisor/files.h"
#include "support/faults.h"

class Owner {
  public:
    Owner();  // the trace begins without indent

    XLog Log() const;
    void Create(std::int32_t processor = 0, const char16_t* dspText = u"",
                platform::ModuleHandle module = nullptr);
    void Start(const char16_t* settings = u"");
    void Poll(bool paused = false, bool cancel = false, std::uint32_t priority = 0);
    // Polls until the condition holds; false after a minute.
    bool PollUntil(const std::function<bool()>& condition, bool paused = false, bool cancel = false);
    bool PollUntilEnd() {
        return PollUntil([this] { return encoder.Finished(); });
    }
    // Lets the encoder see `text` as if a stream had held it.
    void Say(std::u16string_view text, CPUEncoder::Stream stream = CPUEncoder::Stream::kOutput);

    TextSink errors, information, trace;
    clIDTagList tags;
    bool writeThrough = true;
    CPUEncoder encoder;
};

// Stands in for the start of the converter.
class Launch {
  public:
    Launch();  // it can't be started
    // It is child `name` of this test program, which is handed what the converter would be and `arguments`
    // behind it.
    explicit Launch(const char* name, const std::u16string& arguments = u"");

    void UseProgramOfLine() { mOwnProgram = false; }  // the line's program is a copy of the test program

    // The value of a switch of the command file, as the converter would read it.
    std::u16string Value(const std::u16string& name) const;

    int count = 0;
    std::u16string line;         // as the encoder made it
    std::string commandBytes;    // what the command file held at the start
    std::u16string command;      // the same as text
    std::u16string commandFile;  // its name
    std::uint32_t flags = 0;
    platform::ChildStreams streams;
    platform::ChildHandles child;

  private:
    void Note(const char16_t* commandLine, std::uint32_t creationFlags,
              const platform::ChildStreams& childStreams);

    Faulty<platform::CreateProcessW> mCalls;
    bool mOwnProgram = true;
};

// A named event of the test's own.
class Signal {
  public:
    Signal();
    ~Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    const std::u16string& Name() const { return mName; }
    std::u16string As(const char* argument) const;  // "--argument=name"
    void Set() const;
    void Reset() const;
    bool Wait() const;  // false after a minute

  private:
    std::u16string mName;
    platform::Handle mHandle;
};

// The clock goes on by a millisecond each time it is asked, so that names made from it find one that is free,
// until Hold stops it at the value it gave last.
class TestClock {
  public:
    explicit TestClock(std::uint32_t start = Somewhere());
    // A tick that no other test runs at, in another process neither: names are made of it. It lies in the
    // half of the range that prints as negative numbers.
    static std::uint32_t Somewhere();

    void Hold();
    void Advance(std::uint32_t ms) { mNow += ms; }
    std::uint32_t Now() const { return mNow; }

  private:
    std::uint32_t mNow;
    bool mHeld = false;
    Faulty<platform::GetTickCount> mCalls;
};

std::u16string SignedDecimal(std::uint32_t value);
std::size_t CountOf(const std::u16string& text, const std::u16string& part);
