// There is no window layer here: no dialog comes up, and there are no controls.
#include "platform/controls.h"

namespace platform {

constinit Operation<Window(ModuleHandle, const void*, Window, WindowProcedure, LongParameter)>
    CreateDialogIndirectParamW{
        [](ModuleHandle, const void*, Window, WindowProcedure, LongParameter) -> Window { return nullptr; }};
constinit Operation<bool(std::uint32_t)> InitCommonControlsEx{[](std::uint32_t) { return false; }};
constinit Operation<bool(Window, bool)> EnableWindow{[](Window, bool) { return false; }};
constinit Operation<bool(Font, FontFace*)> GetFontFace{[](Font, FontFace*) { return false; }};

}  // namespace platform
