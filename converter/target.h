// Target: the encoder module at work on a file.
#pragma once

#include <cstdint>
#include <string>

#include "converter/error_tap.h"
#include "converter/reporter.h"
#include "foundation/log.h"
#include "plugins/encoder_module.h"
#include "quavermill/module.h"

class Target {
  public:
    explicit Target(Reporter& reporter);

    // False when there is no encoder module of this name.
    bool FindEncoder(const std::u16string& name);
    // Begins to write `file`. Settings and format are the encoder's to refuse; it gives its reasons to the
    // host.
    bool Begin(const std::u16string& file, const std::u16string& settings, const std::uint8_t* format);
    void Write(const clBlockRec& decoded);
    // Completes the file and lets go of it. False when the encoder did not get all of it onto the disk.
    bool End();

    bool HasFailed() const { return mErrors.Lines() > 0; }

  private:
    // The module ends before all that it was given.
    ErrorTap mErrors;
    XLog mLog;
    std::u16string mFile;
    std::u16string mSettings;
    clEncoderSessionRec mSession = {};
    clQvEncoder mEncoder;
};
