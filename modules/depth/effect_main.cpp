#include "modules/depth/depth.h"

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return std::make_unique<clDepth>(log);
}
