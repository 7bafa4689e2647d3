#include "converter/module_search.h"

#include "foundation/paths.h"
#include "platform/names.h"
#include "plugins/codec_handler.h"

namespace {

bool IsName(const XString& name) {
    return !name.IsEmpty() && name.Find(platform::kPathSeparator) == 0 && name.Find(u'/') == 0;
}

}  // namespace

bool LoadDecoderFor(const XString& file, clQvDecoder& decoder, const XLog& log) {
    return clQvCodecHandler::FindDecoder(paths::GetExtension(file), decoder, log, nullptr);
}

bool LoadEncoderNamed(const XString& name, clQvEncoder& encoder, const XLog& log) {
    return IsName(name) && clQvCodecHandler::LoadEncoder(name, encoder, log, nullptr);
}

bool LoadEffectNamed(const XString& name, clQvDSP& effect, const XLog& log) {
    return IsName(name) && clQvCodecHandler::LoadDSP(name, effect, log, nullptr);
}
