#include "plugins/codec_handler.h"

#include "foundation/paths.h"
#include "foundation/qv_text.h"
#include "platform/names.h"

namespace {

// Empty when the library can't tell its own place: a path without it would begin in the current folder, and
// nothing is loaded from there.
XString ModulePath(platform::ModuleHandle module, const char16_t* folder, const XString& name) {
    const char16_t separator[] = {platform::kPathSeparator, 0};
    XString path = paths::GetModuleFolder(module);
    if (path.IsEmpty()) return path;
    path += folder;
    path += separator;
    path += name;
    path += platform::kModuleExtension;
    return path;
}

// What differs between loading an encoder and an effect by name.
struct NamedLoad {
    const char* function;
    const char16_t* folder;
    const char16_t* announcement;
};

template <class Wrapper>
bool LoadNamed(const NamedLoad& kind, const XString& name, Wrapper& wrapper, const XLog& log,
               platform::ModuleHandle module) {
    const XTraceScope trace(log, kind.function);
    const XString path = ModulePath(module, kind.folder, name);
    XLog::Write(kind.announcement, log, nullptr, false, nullptr);
    XLog::Write(path.Text(), log, nullptr, false, nullptr);
    XLog::Write(u"'", log, nullptr, true, nullptr);
    wrapper.Unload();
    return !path.IsEmpty() && wrapper.Load(path.Text()) && wrapper.Create(log);
}

// True when the live module lists the extension. The list ends with the first row that is refused or has no
// text.
bool Decodes(const clQvDecoder& decoder, const XString& extension) {
    const XString sought = extension.ToLower();
    for (std::uint32_t index = 0;; ++index) {
        clCodecQueryRec query = {};
        query.index = index;
        if (!decoder.Get(u"Decodes", &query) || !query.text) return false;
        if (XString(FromQvText(query.text)).ToLower() == sought) return true;
    }
}

}  // namespace

bool clQvCodecHandler::OpenDecoderFile(clQvDecoder& decoder, XString modulePath, XString extension) {
    decoder.Unload();
    const bool loaded = decoder.Load(modulePath.Text());
    if (loaded) decoder.Remember(extension, modulePath);
    return loaded;
}

bool clQvCodecHandler::TryDecoderFile(const XString& modulePath, const XString& extension,
                                      clQvDecoder& decoder, const XLog& log) {
    // A copy, as the extension may be the wrapper's own.
    const XString sought = extension;
    if (OpenDecoderFile(decoder, modulePath, sought) && decoder.Create(log) && Decodes(decoder, sought))
        return true;
    decoder.Unload();
    return false;
}

bool clQvCodecHandler::CreateInstance(clQvDecoder& decoder, const XLog& log) {
    return decoder.Create(log);
}

void clQvCodecHandler::DestroyInstance(clQvDecoder& decoder) {
    decoder.Destroy();
}

void clQvCodecHandler::DestroyInstance(clQvEncoder& encoder) {
    encoder.Destroy();
}

bool clQvCodecHandler::LoadEncoder(const XString& name, clQvEncoder& encoder, const XLog& log,
                                   platform::ModuleHandle module) {
    return LoadNamed({"clQvCodecHandler::LoadEncoder", u"encoder", u"Loading Encoder '"}, name, encoder, log,
                     module);
}

bool clQvCodecHandler::LoadDSP(const XString& name, clQvDSP& effect, const XLog& log,
                               platform::ModuleHandle module) {
    return LoadNamed({"clQvCodecHandler::LoadDSP", u"DSPs", u"Loading DSP '"}, name, effect, log, module);
}
