#include "modules/resample/resample.h"

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return std::make_unique<clResample>(log);
}
