// The modules beside this program. A name that is a path is refused.
#pragma once

#include "foundation/log.h"
#include "foundation/wide_string.h"
#include "plugins/decoder_module.h"
#include "plugins/dsp_module.h"
#include "plugins/encoder_module.h"

// Loads the first decoder module that lists the extension of `file`, and makes an instance that reports to
// `log`.
bool LoadDecoderFor(const XString& file, clQvDecoder& decoder, const XLog& log);

// Loads the module of this name, and makes an instance.
bool LoadEncoderNamed(const XString& name, clQvEncoder& encoder, const XLog& log);
bool LoadEffectNamed(const XString& name, clQvDSP& effect, const XLog& log);
