// What stands around a converter in a test: a host with its buffers, the timer service in the test's own
// hand, and a trace.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "interface/converter.h"
#include "platform/clock.h"
#include "quavermill/quavermill.h"
#include "supervisor/files.h"
#include "support/faults.h"

class Host {
  public:
    Host() : handle(QACCreate()) {}
    ~Host() { Destroy(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    clConverter* operator->() const { return handle; }
    void Destroy();

    std::u16string Errors();  // what QACGetLastError gives, empty when it gives nothing
    std::u16string Info();
    std::uint32_t Progress();
    bool Convert(const char16_t* settings = u"");
    bool PollUntil(std::uint32_t percent);  // false after a minute

    void AddEffect(const char16_t* name, const char16_t* settings);
    void AddTag(const char16_t* name, const char16_t* value);

    QvConverter* handle;

  private:
    std::vector<QvChar> mBuffer = std::vector<QvChar>(1'500'000);
};

// Looks again and again; false after a minute.
bool Eventually(const std::function<bool()>& condition);

inline const QvChar* In(const char16_t* text) {
    return reinterpret_cast<const QvChar*>(text);
}
inline QvChar* Out(char16_t* buffer) {
    return reinterpret_cast<QvChar*>(buffer);
}

// As a module writes to a handle of the log record.
void WriteTo(platform::Handle channel, std::u16string_view text);
void WriteBytesTo(platform::Handle channel, std::string_view bytes);

// A timer service that ticks when the test says so. Stands before the first converter of the test and
// outlives it.
class ManualTimers {
  public:
    ManualTimers();
    void Tick() const;  // once for each timer that runs
    std::size_t Count() const { return mTimers.size(); }

    std::uint32_t delayMs = 0, resolutionMs = 99, flags = 0;  // of the last start

  private:
    struct Timer {
        std::uint32_t id;
        platform::TimerCallback callback;
        void* user;
    };
    std::vector<Timer> mTimers;
    std::uint32_t mLastId = 0;
    Faulty<platform::timeSetEvent> mStarts;
    Faulty<platform::timeKillEvent> mStops;
};

// A trace of one converter, for a scope within its life. It begins without indent.
class Trace {
  public:
    explicit Trace(Host& host);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    std::u16string Text() const { return mSink.Text(); }
    std::u16string Take() { return mSink.Take(); }
    // Only the lines of the converter itself, without their indent.
    std::u16string OwnLines() const;

  private:
    TextSink mSink;
    clConverter* mConverter;
};

std::u16string Enter(const char* name);  // a line, CR LF included
std::u16string Leave(const char* name);
