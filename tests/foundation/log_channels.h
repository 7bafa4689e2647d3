// Real pipes for the log's channels, and a log whose depth and line state are known.
#pragma once

#include <string>

#include "foundation/log.h"
#include "foundation/pipe.h"

// A pipe to log into. Nothing reads it but Take, so what is written must fit into it.
class LogPipe {
  public:
    LogPipe() { mPipe.Create(); }

    platform::Handle End() const { return mPipe.WriteHandle(); }
    std::u16string Take() {
        bool failed = false;
        const clByteStore* bytes = mPipe.ReadAvailable(&failed);
        std::u16string text(bytes->Cursor() / sizeof(char16_t), u'\0');
        std::copy_n(bytes->Data(), text.size() * sizeof(char16_t),
                    reinterpret_cast<std::uint8_t*>(text.data()));
        return text;
    }

  private:
    XPipe mPipe;
};

// The log's depth and line state belong to the process: every test begins at depth 0 and behind a finished
// line.
inline void SettleLog() {
    XLog::StartUp();
    for (int i = 0; i < 100; ++i) XLog::Write(XLog::kLeave, XLog(), nullptr, true, nullptr);
}
