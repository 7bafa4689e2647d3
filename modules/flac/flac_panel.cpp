// The FLAC encoder's settings panel.
#include "modules/flac/flac_encoder.h"
#include "modules/flac/flac_settings.h"

namespace {

constexpr clPanelChoice kLevels[] = {{u"0", u"0 (fastest)"}, {u"1", u"1"}, {u"2", u"2"},
                                     {u"3", u"3"},           {u"4", u"4"}, {u"5", u"5 (usual)"},
                                     {u"6", u"6"},           {u"7", u"7"}, {u"8", u"8 (smallest)"}};
constexpr clPanelChoice kBits[] = {{u"24", u"24 bits"}, {u"16", u"16 bits"}};
constexpr clPanelChoice kVerify[] = {{u"no", u""}, {u"yes", u""}};

constexpr clPanelRow kRows[] = {
    {.label = u"Com&pression level:", .rule = &kFlacLevel, .choices = kLevels},
    {.label = u"&Float samples become:", .rule = &kFlacBits, .choices = kBits},
    {.label = u"&Verify what was encoded",
     .control = PanelControl::check,
     .rule = &kFlacVerify,
     .choices = kVerify},
};

}  // namespace

std::span<const clPanelRow> clFlacEncoder::PanelRows() const {
    return kRows;
}
