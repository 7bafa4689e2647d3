// The WAVE encoder's settings panel.
#include "modules/wave/wave_encoder.h"

namespace {

constexpr clPanelChoice kHeaders[] = {
    {u"auto", u"As the format is"}, {u"plain", u"Plain"}, {u"extensible", u"Extensible"}, {u"rf64", u"RF64"}};

constexpr clPanelChoice kDepths[] = {{u"source", u"As the audio has"},
                                     {u"8", u"8 bits"},
                                     {u"16", u"16 bits"},
                                     {u"24", u"24 bits"},
                                     {u"32", u"32 bits"},
                                     {u"float", u"32 bits, float"},
                                     {u"double", u"64 bits, float"}};

constexpr clPanelRow kRows[] = {{.label = u"&Depth:", .rule = &kWaveDepth, .choices = kDepths},
                                {.label = u"&Header:", .rule = &kWaveHeader, .choices = kHeaders}};

}  // namespace

std::span<const clPanelRow> clWaveEncoder::PanelRows() const {
    return kRows;
}
