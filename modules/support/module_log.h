// clModuleLog: where a module says what is wrong.
//
// The record of handles is copied, as its owner takes it back after Create. A message leaves in one write, so
// that the messages of two modules never mix, and a handle of 0 or -1 swallows it.
#pragma once

#include "foundation/wide_string.h"
#include "platform/types.h"
#include "quavermill/module.h"

class clModuleLog {
  public:
    explicit clModuleLog(const QvLog* log);  // null is a log that is off

    // "file: message" to the host's error or information text. `file` may be null: then the message stands
    // alone.
    void Error(const char16_t* file, const char16_t* message) const;
    void Information(const char16_t* file, const char16_t* message) const;
    // An error while memory is short: takes none. `line` ends in CR LF.
    void ErrorLine(const char16_t* line) const;

  private:
    platform::Handle mErrorOut = platform::kNullHandle;
    platform::Handle mInfoOut = platform::kNullHandle;
};
