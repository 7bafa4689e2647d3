#include "platform/names.h"

namespace platform {

const char16_t kPathSeparator = u'/';
const char16_t* const kLongPathPrefix = u"";
const std::int32_t kFirstRootSeparator = 1;

const char16_t* const kModuleExtension = u".so";
const char16_t* const kNamedModuleExtension = u".so";
const char16_t* const kConverterFileName = u"Quavercore";
const char16_t* const kDefaultTempFolder = u"/tmp";

}  // namespace platform
