// clQvCodecHandler: from a name, a path or a file's extension to a live module, and which modules there are.
//
// It keeps nothing: callers bring the wrapper to fill, and `module`, the file beside which the folders of
// modules are (null: the program). The one thing that lasts is a cache in the user's settings, of which
// decoder has served an extension. Nothing here reports in words; callers say what a failure means to them. A
// module that crashes or never ends its list is not guarded against.
#pragma once

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "foundation/wide_string.h"
#include "platform/module.h"
#include "plugins/decoder_module.h"
#include "plugins/dsp_module.h"
#include "plugins/encoder_module.h"

class clQvCodecHandler {
  public:
    // Replaces the module by that of `modulePath` and remembers what it was loaded for. True when it has
    // every entry; otherwise nothing is remembered. By value: either text may be one that the wrapper is
    // about to forget.
    static bool OpenDecoderFile(clQvDecoder& decoder, XString modulePath, XString extension);
    // True when this module lists `extension` (ASCII case aside) among the types it decodes: the wrapper is
    // live then. On false it is empty.
    static bool TryDecoderFile(const XString& modulePath, const XString& extension, clQvDecoder& decoder,
                               const XLog& log);

    // The first module in the decoder folder for which TryDecoderFile is true; the wrapper is live then, and
    // otherwise as TryDecoderFile leaves it. The cache plays no part.
    static bool FindDecoder(const XString& extension, clQvDecoder& decoder, const XLog& log,
                            platform::ModuleHandle module);
    // An instance of a decoder for the extension of `file`, which itself is not looked at; true when there is
    // one. Any instance of before has ended, also on false. A module that the wrapper holds for this
    // extension (ASCII case aside) is kept and nothing else is tried. Otherwise the one that the cache names
    // is tried, then the folder; what served is written to the cache.
    static bool LoadDecoderForFile(const XString& file, clQvDecoder& decoder, const XLog& log,
                                   platform::ModuleHandle module);

    // An instance in place of any earlier one; true when there is one.
    static bool CreateInstance(clQvDecoder& decoder, const XLog& log);
    static void DestroyInstance(clQvDecoder& decoder);
    static void DestroyInstance(clQvEncoder& encoder);

    // The rows of what the folders hold, in the order of their listing; the lists given are emptied first and
    // are parallel, a row for each format. Names are full paths. Every decoder and encoder is loaded and let
    // go again, one at a time. A decoder that can't be loaded or makes no instance is passed over, and its
    // rows end with the first that has no extension or description; an extension that holds ".IGNORE" is left
    // out. An encoder that is live but has no extension to tell ends the list. Effects are listed unseen.
    static void ListDecoders(XStringList& names, XStringList& extensions, XStringList& descriptions,
                             platform::ModuleHandle module, const XLog& log);
    static void ListEncoders(XStringList& names, XStringList& extensions, platform::ModuleHandle module,
                             const XLog& log);
    static void ListDSPs(XStringList& names, platform::ModuleHandle module);

    // The module of this name in the encoder or effect folder beside `module`, in place of what the wrapper
    // held. True when it is live. One that lacks an entry stays with the wrapper, unused, until its next
    // load.
    static bool LoadEncoder(const XString& name, clQvEncoder& encoder, const XLog& log,
                            platform::ModuleHandle module);
    static bool LoadDSP(const XString& name, clQvDSP& effect, const XLog& log, platform::ModuleHandle module);
};
