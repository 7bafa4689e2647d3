// The Vorbis encoder's settings panel.
#include "modules/vorbis/vorbis_encoder.h"
#include "modules/vorbis/vorbis_settings.h"

namespace {

constexpr clPanelChoice kModes[] = {{u"quality", u"By quality (variable)"},
                                    {u"bitrate", u"By average bit rate"}};
constexpr clPanelChoice kBitrates[] = {{u"64", u"64"},   {u"96", u"96"},   {u"128", u"128"},
                                       {u"160", u"160"}, {u"192", u"192"}, {u"256", u"256"},
                                       {u"320", u"320"}, {u"500", u"500"}};

constexpr clPanelRow kRows[] = {
    {.label = u"&Mode:", .choices = kModes},
    {.label = u"&Quality:",
     .control = PanelControl::number,
     .rule = &kVorbisQuality,
     .unit = u"-1 to 10, the higher the better",
     .step = 0.5,
     .onlyWith = 0,
     .ofChoices = 1},
    {.label = u"&Bit rate:",
     .control = PanelControl::number,
     .rule = &kVorbisBitrate,
     .choices = kBitrates,
     .unit = u"kbit/s, 32 to 500",
     .initial = 160,
     .onlyWith = 0,
     .ofChoices = 2},
};

}  // namespace

std::span<const clPanelRow> clVorbisEncoder::PanelRows() const {
    return kRows;
}
