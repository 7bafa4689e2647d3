#include "settings/toolkit/draw_font.h"

platform::Font XDrawFont::Create() const {
    return platform::CreateFontIndirectW(face.IsEmpty() ? kFallbackFace : face.Text(), pixels, bold);
}
