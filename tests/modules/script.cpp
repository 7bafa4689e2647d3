#include "modules/script.h"

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <sstream>

#include "platform/file.h"
#include "platform/module.h"
#include "platform/text.h"

namespace {

platform::ModuleHandle gSelf = nullptr;
std::atomic<int> gAlive = 0;

// A file beside this module, of its name with another extension.
std::filesystem::path Beside(const char* extension) {
    char16_t self[1024] = {};
    platform::GetModuleFileNameW(gSelf, self, 1024);
    return std::filesystem::path(self).replace_extension(extension);
}

script::Script::Fields Split(const std::string& line) {
    script::Script::Fields fields;
    std::istringstream rest(line);
    for (std::string field; std::getline(rest, field, '|');) fields.push_back(field);
    return fields;
}

}  // namespace

void platform::OnLibraryNotification(ModuleHandle self, bool) {
    gSelf = self;
}

namespace script {

std::string Narrow(const QvChar* text) {
    if (!text) return "(null)";
    const char16_t* wide = reinterpret_cast<const char16_t*>(text);
    const std::int32_t count = platform::WideCharToMultiByte(wide, nullptr, 0);
    std::string narrow(static_cast<std::size_t>(count), '\0');
    platform::WideCharToMultiByte(wide, narrow.data(), count);
    narrow.resize(narrow.find('\0'));
    return narrow;
}

std::basic_string<QvChar> Wide(const std::string& text) {
    const std::int32_t count = platform::MultiByteToWideChar(text.c_str(), nullptr, 0);
    std::basic_string<QvChar> wide(static_cast<std::size_t>(count), QvChar());
    platform::MultiByteToWideChar(text.c_str(), reinterpret_cast<char16_t*>(wide.data()), count);
    wide.resize(wide.find(QvChar()));
    return wide;
}

std::string FormatText(const std::uint8_t* record) {
    QvFormat format;
    std::memcpy(&format, record, sizeof format);
    return "format " + std::to_string(format.wFormatTag) + "/" + std::to_string(format.nChannels) + "/" +
           std::to_string(format.nSamplesPerSec) + "/" + std::to_string(format.wBitsPerSample) +
           (format.nChannels != 0 && (format.nBlockAlign == 0 || format.nAvgBytesPerSec == 0)
                ? " without rates"
                : "");
}

std::string BlockText(const clBlockRec& block) {
    const unsigned sum = std::accumulate(block.data, block.data + block.bytes, 0u);
    return std::to_string(block.bytes) + " sum " + std::to_string(sum) + " finished " +
           std::to_string(block.finished);
}

Script::Script() {
    std::ifstream file(Beside(".script"), std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (Fields fields = Split(line); !fields.empty()) mLines.push_back(fields);
    }
}

std::vector<Script::Fields> Script::Rows(std::string_view directive) const {
    std::vector<Fields> rows;
    for (const Fields& line : mLines) {
        if (line[0] == directive) rows.emplace_back(line.begin() + 1, line.end());
    }
    return rows;
}

std::string Script::Text(std::string_view directive, std::size_t field) const {
    const std::vector<Fields> rows = Rows(directive);
    return rows.empty() || field >= rows[0].size() ? std::string() : rows[0][field];
}

std::int64_t Script::Number(std::string_view directive, std::size_t field, std::int64_t otherwise) const {
    const std::string text = Text(directive, field);
    return text.empty() ? otherwise : std::stoll(text);
}

Instance::Instance(const QvLog* givenLog) : log(*givenLog) {
    ++gAlive;
}

Instance::~Instance() {
    --gAlive;
}

bool Instance::Wanted() const {
    return script.Result("create") != 0 && gAlive <= script.Number("instances", 0, gAlive);
}

void Instance::Called(std::string_view entry, const std::string& details) const {
    std::ofstream journal(Beside(".journal"), std::ios::binary | std::ios::app);
    journal << entry << (details.empty() ? "" : " ") << details << '\n';
    for (const Script::Fields& say : script.Rows("say")) {
        if (say.size() < 3 || say[0] != entry) continue;
        const std::basic_string<QvChar> text = Wide(say[2] + "\r\n");
        const auto bytes = static_cast<std::uint32_t>(text.size() * sizeof(QvChar));
        const platform::Handle channel =
            static_cast<platform::Handle>(say[1] == "error" ? log.errorOut : log.infoOut);
        std::uint32_t written = 0;
        if (platform::IsOpen(channel)) platform::WriteFile(channel, text.data(), bytes, &written);
    }
}

void PanelInstance::Show(std::string_view entry, std::uint64_t parent, std::int32_t x, std::int32_t y,
                         const QvChar* shown) {
    settings = shown ? shown : std::basic_string<QvChar>();
    Called(entry, std::to_string(parent) + " at " + std::to_string(x) + "," + std::to_string(y) + " '" +
                      Narrow(shown) + "'");
}

const QvChar* PanelInstance::Remove(std::string_view entry, std::uint64_t parent) {
    Called(entry, std::to_string(parent));
    if (!script.Has("panel")) return settings.c_str();
    settings = Wide(script.Text("panel"));
    return settings.empty() ? nullptr : settings.c_str();
}

}  // namespace script
