#include "modules/channels/channels.h"

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return std::make_unique<clChannels>(log);
}
