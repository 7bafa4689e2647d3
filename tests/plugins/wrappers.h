// What the tests of the wrappers share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/log.h"
#include "foundation/pipe.h"
#include "modules/placed_module.h"
#include "platform/module.h"
#include "support/faults.h"

inline const XLog kNoLog;

// The names looked up while it stands, in order.
class LookUps {
  public:
    LookUps() {
        mOperation.Replace([this](platform::ModuleHandle module, const char* name) {
            mNames.emplace_back(name);
            return Faulty<platform::GetProcAddress>::Native(module, name);
        });
    }
    const std::vector<std::string>& Names() const { return mNames; }

  private:
    Faulty<platform::GetProcAddress> mOperation;
    std::vector<std::string> mNames;
};

// A channel of a log, to be read back as text.
class Channel {
  public:
    Channel() { mPipe.Create(); }
    platform::Handle WriteEnd() const { return mPipe.WriteHandle(); }
    std::u16string Text() {
        bool failed = false;
        const clByteStore* bytes = mPipe.ReadAvailable(&failed);
        return {reinterpret_cast<const char16_t*>(bytes->Data()), bytes->Cursor() / sizeof(char16_t)};
    }

  private:
    XPipe mPipe;
};

// A path as a journal writes it; test folders have ASCII names only.
inline std::string InJournal(const std::u16string& path) {
    return std::string(path.begin(), path.end());
}
