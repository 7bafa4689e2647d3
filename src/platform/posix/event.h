// A manual-reset event: one word that threads, and with a name processes, share.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "platform/posix/waitable.h"

namespace platform::posix {

// The lowest bit says whether the event is set; the rest counts how often it became so. A waiter that finds
// the count moved on knows that the event was set in the meantime, even when it has been reset since.
using EventWord = std::atomic<std::uint32_t>;

class Event : public Waitable {
  public:
    void Set();
    void Reset();
    std::uint32_t Wait(const Deadline& deadline) override;

  protected:
    explicit Event(EventWord* word) : mWord(word) {}

  private:
    EventWord* mWord;
};

// Null on failure, the reason stored. Of the two outcomes of Create, new and found,
// the last error tells which.
std::unique_ptr<Event> CreateNamedEvent(const std::string& name);
std::unique_ptr<Event> OpenNamedEvent(const std::string& name);

}  // namespace platform::posix
