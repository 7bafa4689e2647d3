// What the two forms differ in, and all of it: of which modules their list is made, what is loaded, and whether a
// module's text is kept once the user goes over to another.
#pragma once

#include <cstdint>

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "foundation/wide_string.h"
#include "platform/module.h"
#include "plugins/dsp_module.h"
#include "plugins/encoder_module.h"

struct EncoderKind {
    using Module = clQvEncoder;
    static constexpr std::uint16_t kTemplate = 101;

    // The paths of the modules to pick from. An encoder whose extension is exactly ".IGNORE" is none of them.
    static void List(XStringList& paths, platform::ModuleHandle module, const XLog& log);
    static bool Load(const XString& name, Module& encoder, const XLog& log, platform::ModuleHandle module);
    static void Keep(const XString& name, const XString& text);
    static XString Kept(const XString& name);
};

struct DSPKind {
    using Module = clQvDSP;
    static constexpr std::uint16_t kTemplate = 102;

    static void List(XStringList& paths, platform::ModuleHandle module, const XLog& log);
    static bool Load(const XString& name, Module& effect, const XLog& log, platform::ModuleHandle module);
    // Nothing is kept: an effect that is picked begins anew.
    static void Keep(const XString&, const XString&) {}
    static XString Kept(const XString&) { return XString(); }
};
