// The settings panel of Fade.
#include "modules/fade/fade.h"

namespace {

constexpr clPanelChoice kShapes[] = {{u"linear", u"Linear"}, {u"cosine", u"Cosine"}};

constexpr clPanelRow kRows[] = {
    {.label = u"&In:",
     .control = PanelControl::number,
     .rule = &kFadeIn,
     .unit = u"seconds at the beginning",
     .step = 0.5},
    {.label = u"&Out:",
     .control = PanelControl::number,
     .rule = &kFadeOut,
     .unit = u"seconds at the end",
     .step = 0.5},
    {.label = u"&Shape:", .rule = &kFadeShape, .choices = kShapes},
};

}  // namespace

std::span<const clPanelRow> clFade::PanelRows() const {
    return kRows;
}
