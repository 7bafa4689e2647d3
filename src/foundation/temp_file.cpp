// The platform picks the name. Where it can't, a random number does. A folder that is missing is made.
#include "foundation/temp_file.h"

#include <new>

#include "foundation/file.h"
#include "foundation/paths.h"
#include "foundation/random.h"
#include "platform/file.h"

namespace {

constexpr const char16_t* kPrefix = u"QvT";
constexpr std::uint32_t kNumbers = 9999;

XString PlatformName(const XString& folder) {
    char16_t name[261] = {};
    return XString(platform::GetTempFileNameW(folder.Text(), kPrefix, 0, name) != 0 ? name : u"");
}

// Nothing tests whether the name is taken.
XString RandomName(const XString& folder) {
    XString name;
    name.Format(u"%s%s%d.tmp", folder.Text(), kPrefix,
                static_cast<std::int32_t>(XRandom::Shared().Next(kNumbers)));
    return name;
}

}  // namespace

XTempFile::~XTempFile() {
    try {
        paths::DeleteFile(*this);
    } catch (const std::bad_alloc&) {
        // The file stays behind; its owner can go all the same.
    }
}

void XTempFile::Generate() {
    paths::DeleteFile(*this);
    const XString folder = paths::GetTempFolder();
    XString name = PlatformName(folder);
    if (name.IsEmpty()) name = RandomName(folder);
    Assign(name.Text(), name.Count());
    XFile file(name);
    if (file.Create()) return;
    paths::CreateFolder(folder);
    file.Create();
}
