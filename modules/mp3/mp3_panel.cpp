// The MP3 encoder's settings panel. Which of the bit rates a file can have depends on its sample rate, which isn't
// known here: all that MP3 has at any of them are offered.
#include "modules/mp3/mp3_encoder.h"
#include "modules/mp3/mp3_settings.h"

namespace {

constexpr clPanelChoice kPresets[] = {
    {u"-quality=0", u"Best (about 245 kbit/s)"},   {u"", u"High (about 190 kbit/s)"},
    {u"-quality=4", u"Medium (about 165 kbit/s)"}, {u"-quality=6", u"Portable (about 115 kbit/s)"},
    {u"-bitrate=128", u"Constant 128 kbit/s"},     {u"-bitrate=320", u"Constant 320 kbit/s"}};
constexpr clPanelChoice kModes[] = {{u"variable", u"Variable"}, {u"constant", u"Constant"}};
constexpr clPanelChoice kBitrates[] = {{u"8", u"8"},     {u"16", u"16"},   {u"24", u"24"},   {u"32", u"32"},
                                       {u"40", u"40"},   {u"48", u"48"},   {u"56", u"56"},   {u"64", u"64"},
                                       {u"80", u"80"},   {u"96", u"96"},   {u"112", u"112"}, {u"128", u"128"},
                                       {u"144", u"144"}, {u"160", u"160"}, {u"192", u"192"}, {u"224", u"224"},
                                       {u"256", u"256"}, {u"320", u"320"}};
constexpr clPanelChoice kChannels[] = {{u"joint", u"Joint stereo"}, {u"stereo", u"Left and right"}};

constexpr std::int32_t kModeRow = 1;

constexpr clPanelRow kRows[] = {
    {.label = u"&Preset:", .control = PanelControl::preset, .choices = kPresets},
    {.label = u"&Mode:", .choices = kModes},
    {.label = u"&Quality:",
     .control = PanelControl::number,
     .rule = &kMp3Quality,
     .unit = u"0 to 9.999, the smaller the better",
     .step = 0.5,
     .onlyWith = kModeRow,
     .ofChoices = 1},
    {.label = u"&Bit rate:",
     .rule = &kMp3Bitrate,
     .choices = kBitrates,
     .unit = u"kbit/s",
     .initial = 128,
     .onlyWith = kModeRow,
     .ofChoices = 2},
    {.label = u"&Channels:", .rule = &kMp3Mode, .choices = kChannels},
    {.label = u"&Algorithm:",
     .control = PanelControl::number,
     .rule = &kMp3Algorithm,
     .unit = u"0 to 9, the smaller the better and slower"},
};

}  // namespace

std::span<const clPanelRow> clMp3Encoder::PanelRows() const {
    return kRows;
}
