// Encoders stand in the order of their folder and effects in that of their paths, as the lists for hosts have them.
#include "settings/form_kinds.h"

#include "plugins/codec_handler.h"
#include "settings/stored_settings.h"

namespace {

// The whole extension: one that only holds it is listed, other than among decoders.
constexpr const char16_t* kNotOffered = u".IGNORE";

}  // namespace

void EncoderKind::List(XStringList& paths, platform::ModuleHandle module, const XLog& log) {
    XStringList extensions;
    clQvCodecHandler::ListEncoders(paths, extensions, module, log);
    for (std::int32_t i = paths.Count() - 1; i >= 0; --i) {
        if (extensions.At(i) == kNotOffered) paths.RemoveAt(i);
    }
}

bool EncoderKind::Load(const XString& name, Module& encoder, const XLog& log, platform::ModuleHandle module) {
    return clQvCodecHandler::LoadEncoder(name, encoder, log, module);
}

void EncoderKind::Keep(const XString& name, const XString& text) {
    StoreSettings(name, text);
}

XString EncoderKind::Kept(const XString& name) {
    return StoredSettings(name);
}

void DSPKind::List(XStringList& paths, platform::ModuleHandle module, const XLog&) {
    clQvCodecHandler::ListDSPs(paths, module);
    paths.Sort(&XStringList::Less, 0);
}

bool DSPKind::Load(const XString& name, Module& effect, const XLog& log, platform::ModuleHandle module) {
    return clQvCodecHandler::LoadDSP(name, effect, log, module);
}
