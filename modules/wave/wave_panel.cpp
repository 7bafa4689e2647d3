// The WAVE encoder's settings panel.
#include "modules/wave/wave_encoder.h"

namespace {

constexpr clPanelChoice kHeaders[] = {
    {u"auto", u"As the format is"}, {u"plain", u"Plain"}, {u"extensible", u"Extensible"}, {u"rf64", u"RF64"}};

constexpr clPanelRow kRows[] = {{.label = u"&Header:", .rule = &kWaveHeader, .choices = kHeaders}};

}  // namespace

std::span<const clPanelRow> clWaveEncoder::PanelRows() const {
    return kRows;
}
