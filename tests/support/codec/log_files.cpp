#include "support/codec/log_files.h"

#include <cstring>

#include "platform/file.h"

namespace {

platform::Handle Make(const std::u16string& path) {
    return platform::CreateFileW.Native()(path.c_str(), platform::kGenericWrite,
                                          platform::kShareRead | platform::kShareWrite,
                                          platform::kCreateAlways, platform::kAttributeNormal);
}

}  // namespace

LogFiles::LogFiles() {
    mLog.mErrorOut = Make(mFolder / u"errors");
    mLog.mInfoOut = Make(mFolder / u"information");
}

LogFiles::~LogFiles() {
    platform::CloseHandle.Native()(mLog.mErrorOut);
    platform::CloseHandle.Native()(mLog.mInfoOut);
}

std::u16string LogFiles::Take(const char16_t* name, std::size_t& taken) const {
    const std::string bytes = mFolder.Read(name);
    std::u16string text((bytes.size() - taken) / 2, u'\0');
    std::memcpy(text.data(), bytes.data() + taken, text.size() * 2);
    taken = bytes.size();
    return text;
}
