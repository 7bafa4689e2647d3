#include "tags/tag_files.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <tuple>

namespace {

#include "sound_bytes.inc"

template <std::size_t size>
std::string Text(const unsigned char (&bytes)[size]) {
    return std::string(bytes, bytes + size);
}

std::uint32_t Byte(const std::string& bytes, std::size_t at) {
    return static_cast<std::uint8_t>(bytes.at(at));
}

std::uint32_t Little32(const std::string& bytes, std::size_t at) {
    return Byte(bytes, at) | Byte(bytes, at + 1) << 8 | Byte(bytes, at + 2) << 16 | Byte(bytes, at + 3) << 24;
}

// Bit by bit, as the format's description has it.
std::uint32_t OggSum(std::string page) {
    page.replace(22, 4, 4, '\0');
    std::uint32_t sum = 0;
    for (const char byte : page) {
        sum ^= static_cast<std::uint32_t>(static_cast<std::uint8_t>(byte)) << 24;
        for (int bit = 0; bit < 8; ++bit) sum = sum << 1 ^ ((sum & 0x80000000u) ? 0x04C11DB7u : 0);
    }
    return sum;
}

std::string OggAudio(const std::string& file, std::uint32_t headers) {
    std::string audio, packet;
    std::uint32_t packets = 0, pages = 0;
    for (std::size_t at = 0; at < file.size(); ++pages) {
        EXPECT_EQ(file.compare(at, 4, "OggS"), 0);
        const std::size_t segments = Byte(file, at + 26);
        std::size_t end = at + 27 + segments;
        const std::size_t body = end;
        for (std::size_t i = 0; i < segments; ++i) end += Byte(file, at + 27 + i);
        EXPECT_EQ(Little32(file, at + 18), pages);
        EXPECT_EQ(Little32(file, at + 22), OggSum(file.substr(at, end - at))) << pages;
        std::size_t from = body;
        for (std::size_t i = 0; i < segments; ++i) {
            const std::size_t length = Byte(file, at + 27 + i);
            packet.append(file, from, length);
            from += length;
            if (length == 255) continue;
            if (packets++ != 1) audio += packet + "|";  // the second is the comment
            packet.clear();
        }
        if (packets > headers) audio += "flags and granule" + file.substr(at + 5, 9);
        at = end;
    }
    return audio + packet;
}

// What stands behind the mark `from` of the untagged file, up to its end, wherever that is in `file`.
std::string Found(const std::string& untagged, const std::string& mark, const std::string& file) {
    const std::string audio = untagged.substr(untagged.find(mark));
    return file.find(audio) == std::string::npos ? "it is not there" : audio;
}

clIDTagList& Fill(clIDTagList& list, const Rows& rows) {
    for (const Row& row : rows) {
        if (row.art.empty())
            list.Add(row.name.c_str(), row.value.c_str());
        else
            list.AddBinary(row.name.c_str(), row.value.c_str(), row.art.data(),
                           static_cast<std::uint32_t>(row.art.size()));
    }
    return list;
}

}  // namespace

void PrintTo(const Row& row, std::ostream* out) {
    *out << testing::PrintToString(row.name) << " = " << testing::PrintToString(row.value.substr(0, 60));
    if (!row.art.empty()) *out << " with " << row.art.size() << " bytes";
}

Rows Sorted(Rows rows) {
    std::ranges::sort(rows, {}, [](const Row& row) { return std::tie(row.name, row.value, row.art); });
    return rows;
}

const std::vector<Sound>& Sounds() {
    static const std::vector<Sound> kSounds = {{TagContainer::flac, u"tone.flac", Text(k_flac)},
                                               {TagContainer::oggVorbis, u"tone.ogg", Text(k_ogg)},
                                               {TagContainer::oggOpus, u"tone.opus", Text(k_opus)},
                                               {TagContainer::mpeg, u"tone.mp3", Text(k_mp3)},
                                               {TagContainer::wave, u"tone.wav", Text(k_wav)},
                                               {TagContainer::aiff, u"tone.aiff", Text(k_aiff)}};
    return kSounds;
}

const Sound& SoundOf(TagContainer container) {
    return *std::ranges::find(Sounds(), container, &Sound::container);
}

std::string AudioOf(const Sound& kind, const std::string& file) {
    switch (kind.container) {
        case TagContainer::oggVorbis:
            return OggAudio(file, 3);
        case TagContainer::oggOpus:
            return OggAudio(file, 2);
        case TagContainer::flac:
            return Found(kind.bytes, "\xFF\xF8", file) + file.substr(file.find("fLaC") + 8, 34);
        case TagContainer::mpeg:
            return Found(kind.bytes, "\xFF\xF3", file);
        case TagContainer::wave:
            return Found(kind.bytes, "fmt ", file);
        default:
            return Found(kind.bytes, "COMM", file);
    }
}

std::u16string TagTest::Put(const Sound& sound) {
    return mFolder.Write(sound.name, sound.bytes);
}

clModuleLog TagTest::Log() const {
    const QvLog record = mLog.Record();
    return clModuleLog(&record);
}

bool TagTest::Write(const Sound& sound, const Rows& rows) {
    clIDTagList list;
    return WriteFileTags(sound.container, (mFolder / sound.name).c_str(), Fill(list, rows), Log());
}

Rows TagTest::Read(const Sound& sound) {
    clIDTagList list;
    EXPECT_TRUE(ReadFileTags(sound.container, (mFolder / sound.name).c_str(), list, Log()));
    Rows rows;
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        const IDTagRow& row = list.At(i);
        const auto* art = reinterpret_cast<const char*>(row.art.Data());
        rows.push_back({row.name.Text(), row.value.Text(), std::string(art ? art : "", row.art.Size())});
    }
    return Sorted(std::move(rows));
}

bool TagTest::Delete(const Sound& sound, const std::u16string& name) {
    return DeleteFileTags(sound.container, (mFolder / sound.name).c_str(), name.c_str(), Log());
}

std::vector<std::u16string> TagTest::NamesInFolder() const {
    std::vector<std::u16string> names;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(mFolder.Path())))
        names.push_back(entry.path().filename().u16string());
    std::ranges::sort(names);
    return names;
}

NoFlush::NoFlush() {
    mFlushes.Replace([](platform::Handle) { return true; });
}
