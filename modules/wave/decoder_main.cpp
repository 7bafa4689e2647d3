#include "modules/wave/wave_decoder.h"

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clWaveDecoder>(log);
}
