// The standard streams of a Reporter, to be read back as text. What is written must fit into a pipe.
#pragma once

#include <string>

#include "foundation/pipe.h"
#include "platform/file.h"
#include "platform/program.h"
#include "support/faults.h"

class StandardStreams {
  public:
    StandardStreams() {
        mOutputPipe.Create();
        mErrorPipe.Create();
        mStreams.Replace([this](std::uint32_t which) {
            return (which == platform::kStdError ? mErrorPipe : mOutputPipe).WriteHandle();
        });
    }

    std::u16string Output() { return Take(mOutputPipe); }
    std::u16string Errors() { return Take(mErrorPipe); }

  private:
    static std::u16string Take(XPipe& pipe) {
        bool failed = false;
        const clByteStore& bytes = *pipe.ReadAvailable(&failed);
        return {reinterpret_cast<const char16_t*>(bytes.Data()), bytes.Cursor() / sizeof(char16_t)};
    }

    XPipe mOutputPipe, mErrorPipe;
    Faulty<platform::GetStdHandle> mStreams;
};
