// The settings panel of Resample.
#include "modules/resample/resample.h"

namespace {

constexpr clPanelChoice kRates[] = {
    {u"", u"As the audio has"}, {u"8000", u"8000"},   {u"11025", u"11025"},   {u"16000", u"16000"},
    {u"22050", u"22050"},       {u"32000", u"32000"}, {u"44100", u"44100"},   {u"48000", u"48000"},
    {u"88200", u"88200"},       {u"96000", u"96000"}, {u"176400", u"176400"}, {u"192000", u"192000"}};

constexpr clPanelRow kRows[] = {{.label = u"&Sample rate:",
                                 .control = PanelControl::number,
                                 .rule = &kResampleRate,
                                 .choices = kRates,
                                 .unit = u"Hz"}};

}  // namespace

std::span<const clPanelRow> clResample::PanelRows() const {
    return kRows;
}
