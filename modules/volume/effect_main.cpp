#include "modules/volume/volume.h"

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return std::make_unique<clVolume>(log);
}
