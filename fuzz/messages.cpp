// The converter's message stream: any bytes, on either stream, in any pieces.
//
// Input: per piece one byte, whose lowest bit names the stream (1 is the error stream) and whose other bits
// the length, and then so many bytes. What the supervisor makes of them is held against the slow twin of the
// tests.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/file.h"
#include "supervisor/cpu_encoder.h"
#include "supervisor/message_twin.h"

namespace {

constexpr platform::Handle kErrors = 1001, kInformation = 1002;
std::u16string gErrors, gInformation;

// The log's two channels end here; nothing else is written.
bool Collect(platform::Handle channel, const void* bytes, std::uint32_t count, std::uint32_t* written) {
    std::u16string& text = channel == kErrors ? gErrors : gInformation;
    text.append(static_cast<const char16_t*>(bytes), count / 2);
    *written = count;
    return true;
}

std::uint32_t StandingClock() {
    return 1;
}

XLog Channels() {
    XLog log;
    log.mErrorOut = kErrors;
    log.mInfoOut = kInformation;
    return log;
}

void Require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    platform::WriteFile.Substitute(&Collect);
    platform::GetTickCount.Substitute(&StandingClock);
    gErrors.clear();
    gInformation.clear();
    CPUEncoder encoder;
    encoder.Create(u"", 0, nullptr, Channels(), u"");
    MessageTwin twin;
    while (size > 0) {
        const bool error = *data & 1;
        const std::size_t length = std::min<std::size_t>(*data >> 1, size - 1);
        const std::vector<std::uint8_t> piece(data + 1,
                                              data + 1 + length);  // a block of its own, for the sanitizer
        encoder.TakeText(error ? CPUEncoder::Stream::kError : CPUEncoder::Stream::kOutput, piece.data(),
                         static_cast<std::uint32_t>(length));
        twin.Take(error, piece.data(), length);
        data += 1 + length;
        size -= 1 + length;
    }
    Require(encoder.Percent() == twin.percent);
    if (!twin.action.empty()) twin.information += twin.action + u"\r\n";
    encoder.ServiceCLI(false, false, 0);
    Require(gErrors == twin.errors);
    Require(gInformation == twin.information);
    return 0;
}
