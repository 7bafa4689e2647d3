#include "supervisor/files.h"

#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/file.h"

bool FileExists(const std::u16string& path) {
    return std::filesystem::exists(path);
}

std::string ReadBytes(const std::u16string& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::u16string TextOf(const std::string& bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    std::memcpy(text.data(), bytes.data(), 2 * text.size());
    return text;
}

void WriteAll(platform::Handle handle, std::u16string_view text) {
    std::uint32_t written = 0;
    platform::WriteFile.Native()(handle, text.data(), static_cast<std::uint32_t>(2 * text.size()), &written);
}

TextSink::TextSink()
    : mChannel(platform::CreateFileW.Native()(mFolder.Write(u"text").c_str(), platform::kGenericWrite,
                                              platform::kShareRead | platform::kShareWrite,
                                              platform::kCreateAlways, platform::kAttributeNormal)) {}

TextSink::~TextSink() {
    platform::CloseHandle.Native()(mChannel);
}

std::u16string TextSink::Take() {
    const std::u16string all = Text();
    const std::u16string fresh = all.substr(mTaken);
    mTaken = all.size();
    return fresh;
}
