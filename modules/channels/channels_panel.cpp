// The settings panel of Channels. More than 8 can be typed: audio that has as many stays as it is.
#include "modules/channels/channels.h"

namespace {

constexpr clPanelChoice kCounts[] = {{u"", u"As the audio has"},
                                     {u"1", u"1 (mono)"},
                                     {u"2", u"2 (stereo)"},
                                     {u"3", u"3"},
                                     {u"4", u"4"},
                                     {u"5", u"5"},
                                     {u"6", u"6 (5.1)"},
                                     {u"7", u"7"},
                                     {u"8", u"8 (7.1)"}};

constexpr clPanelRow kRows[] = {{.label = u"&Number of channels:",
                                 .control = PanelControl::number,
                                 .rule = &kChannelCount,
                                 .choices = kCounts}};

}  // namespace

std::span<const clPanelRow> clChannels::PanelRows() const {
    return kRows;
}
