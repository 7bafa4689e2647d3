// An event that is closed at the end of its scope.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "platform/synchronisation.h"

class OwnedEvent {
  public:
    explicit OwnedEvent(platform::Handle event) : mEvent(event) {}
    ~OwnedEvent() { Close(); }
    OwnedEvent(const OwnedEvent&) = delete;
    OwnedEvent& operator=(const OwnedEvent&) = delete;

    operator platform::Handle() const { return mEvent; }
    bool IsSet() const { return platform::WaitForSingleObject(mEvent, 0) == platform::kWaitObject; }
    void Close() {
        EXPECT_EQ(platform::CloseHandle(mEvent), mEvent != platform::kNullHandle);
        mEvent = platform::kNullHandle;
    }

  private:
    platform::Handle mEvent;
};

inline OwnedEvent Create(const std::u16string& name) {
    return OwnedEvent(platform::CreateEventW(name.c_str()));
}

// The event that a child's argument names, in ASCII.
inline OwnedEvent OpenByArgument(const char* name) {
    return OwnedEvent(
        platform::OpenEventW(std::u16string(name, name + std::char_traits<char>::length(name)).c_str()));
}
