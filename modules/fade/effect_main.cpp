#include "modules/fade/fade.h"

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return std::make_unique<clFade>(log);
}
