#include "modules/mp3/mp3_encoder.h"

std::unique_ptr<clModuleEncoder> MakeEncoder(const clModuleLog& log) {
    return std::make_unique<clMp3Encoder>(log);
}
