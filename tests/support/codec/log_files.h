// Where a module under test reports: two files of a test's own.
#pragma once

#include <string>

#include "foundation/log.h"
#include "quavermill/module.h"
#include "support/temp_folder.h"

class LogFiles {
  public:
    LogFiles();
    ~LogFiles();
    LogFiles(const LogFiles&) = delete;
    LogFiles& operator=(const LogFiles&) = delete;

    const XLog& Log() const { return mLog; }
    QvLog Record() const { return {mLog.mErrorOut, mLog.mInfoOut, 0}; }

    // What was written since the last time, whole.
    std::u16string TakeErrors() { return Take(u"errors", mErrorsTaken); }
    std::u16string TakeInformation() { return Take(u"information", mInformationTaken); }

  private:
    std::u16string Take(const char16_t* name, std::size_t& taken) const;

    TempFolder mFolder;
    XLog mLog;
    std::size_t mErrorsTaken = 0;
    std::size_t mInformationTaken = 0;
};
