// The Opus encoder's settings panel. What mono can't have (more than 300 kbit/s) isn't known before the audio is.
#include "modules/opus/opus_encoder.h"
#include "modules/opus/opus_settings.h"

namespace {

constexpr clPanelChoice kBitrates[] = {
    {u"", u"Automatic"}, {u"24", u"24"},   {u"32", u"32"},   {u"64", u"64"},   {u"96", u"96"},
    {u"128", u"128"},    {u"160", u"160"}, {u"192", u"192"}, {u"256", u"256"}, {u"510", u"510"}};
constexpr clPanelChoice kModes[] = {
    {u"vbr", u"Variable"}, {u"cvbr", u"Variable within limits"}, {u"cbr", u"Constant"}};
constexpr clPanelChoice kSignals[] = {{u"auto", u"Automatic"}, {u"music", u"Music"}, {u"speech", u"Speech"}};

constexpr clPanelRow kRows[] = {
    {.label = u"&Bit rate:",
     .control = PanelControl::number,
     .rule = &kOpusBitrate,
     .choices = kBitrates,
     .unit = u"kbit/s for all channels, 6 to 512"},
    {.label = u"&Mode:", .rule = &kOpusMode, .choices = kModes},
    {.label = u"Com&plexity:",
     .control = PanelControl::number,
     .rule = &kOpusComplexity,
     .unit = u"0 to 10, the higher the better and slower"},
    {.label = u"&Sound:", .rule = &kOpusSignal, .choices = kSignals},
};

}  // namespace

std::span<const clPanelRow> clOpusEncoder::PanelRows() const {
    return kRows;
}
