// clQvCodecHandler: from a name or a path to a live module. It keeps nothing: callers bring the wrapper to
// fill.
//
// Nothing here reports in words; callers say what a failure means to them.
#pragma once

#include "foundation/log.h"
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

    // An instance in place of any earlier one; true when there is one.
    static bool CreateInstance(clQvDecoder& decoder, const XLog& log);
    static void DestroyInstance(clQvDecoder& decoder);
    static void DestroyInstance(clQvEncoder& encoder);

    // The module of this name in the encoder or effect folder beside `module`, in place of what the wrapper
    // held. True when it is live. One that lacks an entry stays with the wrapper, unused, until its next
    // load.
    static bool LoadEncoder(const XString& name, clQvEncoder& encoder, const XLog& log,
                            platform::ModuleHandle module);
    static bool LoadDSP(const XString& name, clQvDSP& effect, const XLog& log, platform::ModuleHandle module);
};
