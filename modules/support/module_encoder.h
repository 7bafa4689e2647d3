// clModuleEncoder: what an encoder module of ours fills in. The nine entries and their records are served for
// all of them by encoder_entries.cpp; a module links that and provides MakeEncoder.
//
// A false result is a failure that has been reported to mLog. An exception is caught at the entry and
// reported there, and the encoding has then failed.
#pragma once

#include <cstdint>
#include <memory>

#include "modules/support/module_log.h"
#include "modules/support/panel.h"

class clModuleEncoder : public clPanelOwner {
  public:
    explicit clModuleEncoder(const clModuleLog& log) : mLog(log) {}
    clModuleEncoder(const clModuleEncoder&) = delete;
    clModuleEncoder& operator=(const clModuleEncoder&) = delete;

    virtual const char16_t* Extension() const = 0;  // ".wav"; a constant

    // Opens `file`, giving up one that is still open. `settings` is never null.
    virtual bool Begin(const char16_t* file, const char16_t* settings, const QvFormatExtensible& format) = 0;
    // False without a word when nothing is open or the encoding has failed before.
    virtual bool Encode(const std::uint8_t* data, std::uint32_t bytes) = 0;
    // Completes and closes the file. False for one that isn't good, and when none is open.
    virtual bool End() = 0;
    // The encoding can't succeed any more: End answers false.
    virtual void Abandon() = 0;

    const clModuleLog& Log() const { return mLog; }

  protected:
    const clModuleLog mLog;
};

// Provided by the module.
std::unique_ptr<clModuleEncoder> MakeEncoder(const clModuleLog& log);
