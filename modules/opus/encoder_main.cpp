#include "modules/opus/opus_encoder.h"

std::unique_ptr<clModuleEncoder> MakeEncoder(const clModuleLog& log) {
    return std::make_unique<clOpusEncoder>(log);
}
