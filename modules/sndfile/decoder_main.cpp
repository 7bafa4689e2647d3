#include "modules/sndfile/sndfile_decoder.h"

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clSndfileDecoder>(log);
}
