// A host that decodes directly.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "interface/host.h"
#include "interface/module_doubles.h"
#include "modules/module_home.h"

// What QADDecodeBlock gave: the results, and the bytes of the buffer that are no longer what was put there.
struct Decoded {
    std::int32_t result = 0;
    std::uint32_t bytes = 0;
    std::uint32_t finished = 0;
    std::uint64_t positionMs = 0;
    Bytes data;

    // Nothing was left: `bytes` as it was, everything else zero.
    bool IsNothing(std::uint32_t wanted) const {
        return result == QV_DONE && bytes == wanted && finished == 0 && positionMs == 0 && data.empty();
    }
};

class DecodingHost : public testing::Test {
  public:
    DecodingHost() { host->moduleHandle = home.Self(); }

    std::int32_t Open(QvFormatExtensible request = {}) {
        timers.Tick();  // nobody else empties the pipes, and they don't hold much
        format = request;
        return QADOpenFile(host.handle, In(file.c_str()), &format, &lengthMs);
    }
    // No buffer is longer than what is wanted, so that a byte too much is noticed.
    Decoded Decode(std::uint32_t wanted);
    // As quavermill.h shows it.
    Bytes Walk(std::uint32_t wanted);

    std::u16string Errors() {
        timers.Tick();
        return host.Errors();
    }
    std::u16string Info() {
        timers.Tick();
        return host.Info();
    }
    // As a message names it.
    std::u16string Quoted(const std::u16string& name) const { return u"'" + name + u"'\r\n"; }

    ManualTimers timers;
    const ModuleHome home;
    const std::u16string file = home.Folder().Write(u"take.abc");
    Host host;
    QvFormatExtensible format = {};
    std::uint64_t lengthMs = 4711;
};

// One whose decoder is the test itself.
class DoubleDecoding : public DecodingHost {
  public:
    const PlacedModule module = home.Place(u"decoder/abc", "whole_decoder");
    DecoderDouble decoder;
};

// Asks for these three, 0 for the file's own.
inline QvFormatExtensible Request(std::uint16_t channels, std::uint16_t bits, std::uint32_t rate) {
    QvFormatExtensible request = {};
    request.Format.nChannels = channels;
    request.Format.wBitsPerSample = bits;
    request.Format.nSamplesPerSec = rate;
    return request;
}
