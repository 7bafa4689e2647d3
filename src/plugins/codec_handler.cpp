#include "plugins/codec_handler.h"

#include "plugins/module_folder.h"

namespace {

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

}  // namespace

bool clQvCodecHandler::OpenDecoderFile(clQvDecoder& decoder, XString modulePath, XString extension) {
    decoder.Unload();
    const bool loaded = decoder.Load(modulePath.Text());
    if (loaded) decoder.Remember(extension, modulePath);
    return loaded;
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
    return LoadNamed({"clQvCodecHandler::LoadEncoder", kEncoderFolder, u"Loading Encoder '"}, name, encoder,
                     log, module);
}

bool clQvCodecHandler::LoadDSP(const XString& name, clQvDSP& effect, const XLog& log,
                               platform::ModuleHandle module) {
    return LoadNamed({"clQvCodecHandler::LoadDSP", kDSPFolder, u"Loading DSP '"}, name, effect, log, module);
}
