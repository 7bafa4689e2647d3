#include "modules/wave/property_rows.h"

#include "foundation/joined.h"
#include "modules/support/property_text.h"

void AddPropertyRows(const clWaveFile& file, clIDTagList& rows) {
    const clWaveFormat& format = file.Format();
    const QvFormat& head = format.Head();
    rows.Add(u"Container", file.Is64() ? u"WAVE (RF64)" : u"WAVE");
    rows.Add(u"Codec", format.CodecName().Text());
    rows.Add(u"Channels", NumberText(head.nChannels).Text());
    if (format.IsExtensible() && format.Record().dwChannelMask != 0)
        rows.Add(u"Channel mask",
                 Joined({u"0x", XString::FromHex(format.Record().dwChannelMask).Text()}).Text());
    rows.Add(u"Sample rate", UnitText(head.nSamplesPerSec, u"Hz").Text());
    if (head.wBitsPerSample != 0) rows.Add(u"Bits per sample", NumberText(head.wBitsPerSample).Text());
    if (format.IsExtensible() && format.Record().wValidBitsPerSample != head.wBitsPerSample)
        rows.Add(u"Valid bits", NumberText(format.Record().wValidBitsPerSample).Text());
    rows.Add(u"Bit rate", UnitText(std::uint64_t{head.nAvgBytesPerSec} * 8 / 1000, u"kbit/s").Text());
    rows.Add(u"Length", DurationText(file.LengthMs()).Text());
    rows.Add(u"File size", UnitText(file.Size(), u"bytes").Text());
}
