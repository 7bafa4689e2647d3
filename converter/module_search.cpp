#include "converter/module_search.h"

#include "foundation/find_file.h"
#include "foundation/paths.h"
#include "platform/names.h"
#include "plugins/codec_handler.h"

bool LoadDecoderFor(const XString& file, clQvDecoder& decoder, const XLog& log) {
    const XString extension = paths::GetExtension(file);
    XString folder = paths::GetModuleFolder(nullptr);
    if (folder.IsEmpty()) return false;  // never from the current folder
    folder += u"decoder";
    XString pattern(u"*");
    pattern += platform::kModuleExtension;
    XFindFile modules(pattern, folder);
    while (modules.Next()) {
        if (!modules.IsFolder() && clQvCodecHandler::TryDecoderFile(modules.Name(), extension, decoder, log))
            return true;
    }
    return false;
}

bool LoadEncoderNamed(const XString& name, clQvEncoder& encoder, const XLog& log) {
    if (name.IsEmpty() || name.Find(platform::kPathSeparator) != 0 || name.Find(u'/') != 0) return false;
    return clQvCodecHandler::LoadEncoder(name, encoder, log, nullptr);
}
