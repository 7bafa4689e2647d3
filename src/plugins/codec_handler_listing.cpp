// Which modules are there, and what do they do? To answer, every decoder and encoder of the folder is loaded,
// asked and let go again, one after the other.
//
// A decoder that is broken costs only its own rows. An encoder that cannot say its extension ends the whole
// list instead, wanted so: a list that stops short is noticed, and one without a single encoder is not.
// Effects are not asked anything, so a broken one is listed like any other.
//
// Names come last into their list: should the memory end halfway through a row, a name has all its texts.
#include "foundation/qv_text.h"
#include "plugins/codec_handler.h"
#include "plugins/module_folder.h"

namespace {

// What the wrapper is said to have been loaded for, so that it is never taken for one that serves a file.
constexpr const char16_t* kNoExtension = u".NOTUSING";

// Stands in an extension that is not to be offered. A file that has it is decoded all the same.
bool IsHidden(const XString& extension) {
    return extension.Find(u".IGNORE") != 0;
}

}  // namespace

void clQvCodecHandler::ListDecoders(XStringList& names, XStringList& extensions, XStringList& descriptions,
                                    platform::ModuleHandle module, const XLog& log) {
    names.Clear();
    extensions.Clear();
    descriptions.Clear();
    ModuleWalk modules(module, kDecoderFolder);
    while (modules.Next()) {
        clQvDecoder decoder;
        if (!OpenDecoderFile(decoder, modules.Path(), kNoExtension) || !decoder.Create(log)) continue;
        clCodecQueryRec row;
        for (std::uint32_t index = 0; decoder.GetDecodesRow(index, &row) && row.description; ++index) {
            if (IsHidden(FromQvText(row.text))) continue;
            descriptions.Add(FromQvText(row.description));
            extensions.Add(FromQvText(row.text));
            names.Add(modules.Path().Text());
        }
    }
}

void clQvCodecHandler::ListEncoders(XStringList& names, XStringList& extensions,
                                    platform::ModuleHandle module, const XLog& log) {
    names.Clear();
    extensions.Clear();
    ModuleWalk modules(module, kEncoderFolder);
    while (modules.Next()) {
        clQvEncoder encoder;
        if (!encoder.Load(modules.Path().Text()) || !encoder.Create(log)) continue;
        clCodecQueryRec query = {};
        if (!encoder.Get(u"Extension", &query) || !query.text) return;
        extensions.Add(FromQvText(query.text));
        names.Add(modules.Path().Text());
    }
}

void clQvCodecHandler::ListDSPs(XStringList& names, platform::ModuleHandle module) {
    names.Clear();
    ModuleWalk modules(module, kDSPFolder);
    while (modules.Next()) names.Add(modules.Path().Text());
}
