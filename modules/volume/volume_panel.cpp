// The settings panel of Volume.
#include "modules/volume/volume.h"

namespace {

constexpr clPanelRow kRows[] = {{.label = u"&Gain:",
                                 .control = PanelControl::number,
                                 .rule = &kVolumeGain,
                                 .unit = u"dB, -100 to 100; below 0 is quieter",
                                 .step = 0.5}};

}  // namespace

std::span<const clPanelRow> clVolume::PanelRows() const {
    return kRows;
}
