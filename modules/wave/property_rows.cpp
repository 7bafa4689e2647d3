#include "modules/wave/property_rows.h"

#include "foundation/joined.h"

namespace {

XString Number(std::uint64_t number) {
    return XString::FromUInt64(number);
}

XString PaddedNumber(std::uint64_t number, std::int32_t digits) {
    XString text = Number(number);
    while (text.Length() < digits) text.Insert(u"0", 1);
    return text;
}

// h:mm:ss.mmm
XString Duration(std::uint64_t ms) {
    return Joined({Number(ms / 3600000).Text(), u":", PaddedNumber(ms / 60000 % 60, 2).Text(), u":",
                   PaddedNumber(ms / 1000 % 60, 2).Text(), u".", PaddedNumber(ms % 1000, 3).Text()});
}

}  // namespace

void AddPropertyRows(const clWaveFile& file, clIDTagList& rows) {
    const clWaveFormat& format = file.Format();
    const QvFormat& head = format.Head();
    rows.Add(u"Container", file.Is64() ? u"WAVE (RF64)" : u"WAVE");
    rows.Add(u"Codec", format.CodecName().Text());
    rows.Add(u"Channels", Number(head.nChannels).Text());
    if (format.IsExtensible() && format.Record().dwChannelMask != 0)
        rows.Add(u"Channel mask",
                 Joined({u"0x", XString::FromHex(format.Record().dwChannelMask).Text()}).Text());
    rows.Add(u"Sample rate", Joined({Number(head.nSamplesPerSec).Text(), u" Hz"}).Text());
    if (head.wBitsPerSample != 0) rows.Add(u"Bits per sample", Number(head.wBitsPerSample).Text());
    if (format.IsExtensible() && format.Record().wValidBitsPerSample != head.wBitsPerSample)
        rows.Add(u"Valid bits", Number(format.Record().wValidBitsPerSample).Text());
    rows.Add(u"Bit rate",
             Joined({Number(std::uint64_t{head.nAvgBytesPerSec} * 8 / 1000).Text(), u" kbit/s"}).Text());
    rows.Add(u"Length", Duration(file.LengthMs()).Text());
    rows.Add(u"File size", Joined({Number(file.Size()).Text(), u" bytes"}).Text());
}
