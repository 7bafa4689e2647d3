#include "realfiles/recording.h"

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

Recording FromJson(const Json& entry) {
    Recording recording;
    recording.file = entry.at("file");
    recording.size = entry.at("size");
    recording.crc = entry.at("crc");
    recording.rate = entry.at("rate");
    recording.channels = entry.at("channels");
    recording.bits = entry.at("bits");
    recording.frames = entry.at("frames");
    if (entry.contains("audio")) recording.audio = entry["audio"].get<std::uint32_t>();
    recording.loudness = entry.value("loudness", 0.0);
    if (entry.contains("tags")) {
        recording.tags.emplace();
        for (const Json& field : entry["tags"]) recording.tags->emplace(field.at(0), field.at(1));
    }
    return recording;
}

std::vector<Recording> ReadList() {
    std::ifstream file(QV_RECORDINGS, std::ios::binary);
    const Json list = Json::parse(file);
    std::vector<Recording> recordings;
    for (const Json& entry : list) recordings.push_back(FromJson(entry));
    return recordings;
}

}  // namespace

std::u16string Recording::Path() const {
    return std::filesystem::absolute(std::filesystem::path(std::u8string(file.begin(), file.end())))
        .make_preferred()
        .u16string();
}

std::string Recording::Extension() const {
    return file.substr(file.rfind('.') + 1);
}

const std::vector<Recording>& Recordings() {
    static const std::vector<Recording> recordings = ReadList();
    return recordings;
}
