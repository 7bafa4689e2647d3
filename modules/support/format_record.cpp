#include "modules/support/format_record.h"

#include <algorithm>
#include <iterator>

#include "modules/support/channel_order.h"

namespace {

constexpr std::uint8_t kSubFormatTail[] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};

bool NeedsExtension(const clStreamFacts& facts) {
    const bool unusual = facts.channelMask != 0 && facts.channelMask != UsualMask(facts.channels);
    return facts.channels > 2 || unusual || (facts.validBits != 0 && facts.validBits != facts.bits);
}

}  // namespace

QvFormatExtensible MakeFormatRecord(const clStreamFacts& facts) {
    QvFormatExtensible record{};
    QvFormat& head = record.Format;
    const std::uint8_t type = facts.isFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    head.wFormatTag = type;
    head.nChannels = facts.channels;
    head.nSamplesPerSec = facts.rate;
    head.wBitsPerSample = facts.bits;
    head.nBlockAlign = static_cast<std::uint16_t>(FrameBytes(facts));
    head.nAvgBytesPerSec = facts.rate * FrameBytes(facts);
    if (!NeedsExtension(facts)) return record;
    head.wFormatTag = QV_FORMAT_EXTENSIBLE;
    head.cbSize = sizeof record - sizeof head;
    record.wValidBitsPerSample = facts.validBits != 0 ? facts.validBits : facts.bits;
    record.dwChannelMask = facts.channelMask;
    record.SubFormat[0] = type;
    std::copy(std::begin(kSubFormatTail), std::end(kSubFormatTail), record.SubFormat + 2);
    return record;
}
