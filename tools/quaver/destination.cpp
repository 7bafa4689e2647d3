#include "destination.h"

#include "platform/file.h"
#include "platform/program.h"

bool Exists(const std::u16string& path) {
    return platform::GetFileAttributesW(path.c_str()) != platform::kInvalidAttributes;
}

std::u16string ObjectionTo(const std::u16string& source, const std::u16string& destination, bool overwrite) {
    const std::uint32_t attributes = platform::GetFileAttributesW(destination.c_str());
    if (attributes == platform::kInvalidAttributes) return {};
    // What is complete takes the destination's name, and a device would be gone.
    if (attributes & (platform::kAttributeDirectory | platform::kAttributeDevice))
        return u"'" + destination + u"' is no file that could be replaced.";
    if (platform::IsSameFile(source.c_str(), destination.c_str()))
        return u"Source and destination are the same file.";
    if (!overwrite) return u"'" + destination + u"' exists; --overwrite replaces it.";
    return {};
}
