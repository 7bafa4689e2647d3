#include "converter/module_search.h"

#include "foundation/paths.h"
#include "platform/names.h"
#include "plugins/codec_handler.h"

bool LoadDecoderFor(const XString& file, clQvDecoder& decoder, const XLog& log) {
    return clQvCodecHandler::FindDecoder(paths::GetExtension(file), decoder, log, nullptr);
}

bool LoadEncoderNamed(const XString& name, clQvEncoder& encoder, const XLog& log) {
    if (name.IsEmpty() || name.Find(platform::kPathSeparator) != 0 || name.Find(u'/') != 0) return false;
    return clQvCodecHandler::LoadEncoder(name, encoder, log, nullptr);
}
