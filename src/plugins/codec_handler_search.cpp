// Which decoder opens this file? Three answers, the cheapest first: the module that the wrapper still holds
// from a file of the same extension; the one that the user's settings remember for the extension; the first
// one in the folder that lists it.
//
// To ask a module it has to be loaded, so the third costs as many loads as modules stand before the right
// one, the second one load, and the first none. What is remembered is only ever believed as far as the module
// itself confirms it: the same questions as in the folder are put to it, and a module that no longer answers
// makes room for a search whose result takes its place. A search without a result leaves the old entry alone,
// so a module that comes back is found again.
#include "foundation/paths.h"
#include "foundation/qv_text.h"
#include "foundation/registry.h"
#include "plugins/codec_handler.h"
#include "plugins/module_folder.h"

namespace {

// One value for each extension: the path of its decoder. Modules of another word size have a key of their
// own.
constexpr const char16_t* kCacheKey = u"Software\\Brindleway\\Quavermill\\DecoderCache64";

bool SameExtension(const XString& one, const XString& other) {
    return one.ToLower() == other.ToLower();
}

// True when the live module lists the extension.
bool Decodes(const clQvDecoder& decoder, const XString& extension) {
    clCodecQueryRec row;
    for (std::uint32_t index = 0; decoder.GetDecodesRow(index, &row); ++index) {
        if (SameExtension(FromQvText(row.text), extension)) return true;
    }
    return false;
}

bool TryRememberedFile(const XString& extension, clQvDecoder& decoder, const XLog& log) {
    const XString path = XRegistry::ReadString(extension.Text(), kCacheKey);
    return !path.IsEmpty() && clQvCodecHandler::TryDecoderFile(path, extension, decoder, log);
}

}  // namespace

bool clQvCodecHandler::TryDecoderFile(const XString& modulePath, const XString& extension,
                                      clQvDecoder& decoder, const XLog& log) {
    // A copy, as the extension may be the wrapper's own.
    const XString sought = extension;
    if (OpenDecoderFile(decoder, modulePath, sought) && decoder.Create(log) && Decodes(decoder, sought))
        return true;
    decoder.Unload();
    return false;
}

bool clQvCodecHandler::FindDecoder(const XString& extension, clQvDecoder& decoder, const XLog& log,
                                   platform::ModuleHandle module) {
    ModuleWalk modules(module, kDecoderFolder);
    while (modules.Next()) {
        if (TryDecoderFile(modules.Path(), extension, decoder, log)) return true;
    }
    return false;
}

// A wrapper that holds a module of this extension is never searched for another one, even where the module
// then makes no instance. What was found is written also where it was only confirmed.
bool clQvCodecHandler::LoadDecoderForFile(const XString& file, clQvDecoder& decoder, const XLog& log,
                                          platform::ModuleHandle module) {
    decoder.Destroy();
    const XString extension = paths::GetExtension(file);
    if (SameExtension(decoder.RememberedExtension(), extension)) return CreateInstance(decoder, log);
    if (!TryRememberedFile(extension, decoder, log) && !FindDecoder(extension, decoder, log, module))
        return false;
    XRegistry::WriteString(decoder.RememberedPath(), extension.Text(), kCacheKey);
    return true;
}
