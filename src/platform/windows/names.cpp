// Windows spellings.
#include "platform/names.h"

namespace platform {

const char16_t kPathSeparator = u'\\';
const char16_t* const kLongPathPrefix = u"\\\\?\\";
const std::int32_t kFirstRootSeparator = 3;
const char16_t* const kModuleExtension = u".dll";
const char16_t* const kNamedModuleExtension = u".DLL";
const char16_t* const kConverterFileName = u"Quavercore.exe";
const char16_t* const kDefaultTempFolder = u"C:\\Temp";

}  // namespace platform
