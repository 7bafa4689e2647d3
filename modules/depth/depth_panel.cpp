// The settings panel of Depth. The type can be chosen where there are two: 8, 16 and 24 bits are integers, 64 are
// float.
#include "modules/depth/depth.h"

namespace {

constexpr clPanelChoice kBits[] = {{u"", u"As the audio has"}, {u"8", u"8 bits"},   {u"16", u"16 bits"},
                                   {u"24", u"24 bits"},        {u"32", u"32 bits"}, {u"64", u"64 bits"}};
constexpr std::uint32_t kAsItIs = 1 << 0, k32 = 1 << 4;
constexpr clPanelChoice kTypes[] = {
    {u"", u"As the audio has"}, {u"integer", u"Integer"}, {u"float", u"Float"}};

constexpr clPanelRow kRows[] = {
    {.label = u"&Depth:", .rule = &kDepthBits, .choices = kBits},
    {.label = u"&Type:", .rule = &kDepthType, .choices = kTypes, .onlyWith = 0, .ofChoices = kAsItIs | k32},
};

}  // namespace

std::span<const clPanelRow> clDepth::PanelRows() const {
    return kRows;
}
