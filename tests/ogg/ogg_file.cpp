#include "ogg/ogg_file.h"

namespace ogg_file {

namespace {

void Put(std::string& bytes, std::uint64_t number, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i));
}

std::uint64_t Get(std::string_view bytes, std::size_t at, int count) {
    std::uint64_t number = 0;
    for (int i = count; i > 0; --i)
        number = number << 8 | static_cast<std::uint8_t>(bytes[at + static_cast<std::size_t>(i) - 1]);
    return number;
}

// Bit by bit.
std::uint32_t CheckSum(std::string_view bytes) {
    std::uint32_t sum = 0;
    for (const char byte : bytes) {
        sum ^= std::uint32_t{static_cast<std::uint8_t>(byte)} << 24;
        for (int bit = 0; bit < 8; ++bit) sum = (sum & 0x80000000) != 0 ? sum << 1 ^ 0x04C11DB7 : sum << 1;
    }
    return sum;
}

}  // namespace

std::string Page::Bytes() const {
    std::string bytes = "OggS";
    Put(bytes, 0, 1);
    Put(bytes, flags, 1);
    Put(bytes, static_cast<std::uint64_t>(granule), 8);
    Put(bytes, serial, 4);
    Put(bytes, number, 4);
    Put(bytes, 0, 4);
    Put(bytes, lacing.size(), 1);
    bytes += lacing + body;
    std::string sum;
    Put(sum, CheckSum(bytes), 4);
    return bytes.replace(22, 4, sum);
}

std::vector<Page> Pages(std::string_view file) {
    std::vector<Page> pages;
    while (!file.empty()) {
        Page page;
        page.flags = static_cast<std::uint8_t>(file[5]);
        page.granule = static_cast<std::int64_t>(Get(file, 6, 8));
        page.serial = static_cast<std::uint32_t>(Get(file, 14, 4));
        page.number = static_cast<std::uint32_t>(Get(file, 18, 4));
        page.lacing = file.substr(27, Get(file, 26, 1));
        std::size_t bodyBytes = 0;
        for (const char length : page.lacing) bodyBytes += static_cast<std::uint8_t>(length);
        page.body = file.substr(27 + page.lacing.size(), bodyBytes);
        file.remove_prefix(27 + page.lacing.size() + bodyBytes);
        pages.push_back(page);
    }
    return pages;
}

std::string Bytes(const std::vector<Page>& pages) {
    std::string bytes;
    for (const Page& page : pages) bytes += page.Bytes();
    return bytes;
}

std::size_t FirstAudioPage(const std::vector<Page>& pages) {
    std::size_t index = 0;
    while (index < pages.size() && pages[index].granule == 0) ++index;
    return index;
}

Page PageOf(const std::vector<std::string>& packets, std::uint32_t serial, std::uint32_t number) {
    Page page;
    page.serial = serial;
    page.number = number;
    for (const std::string& packet : packets) {
        page.lacing.append(packet.size() / 255, '\xFF');
        page.lacing += static_cast<char>(packet.size() % 255);
        page.body += packet;
    }
    return page;
}

std::vector<std::string> Packets(const std::vector<Page>& pages) {
    std::vector<std::string> packets;
    std::string packet;
    for (const Page& page : pages) {
        std::size_t at = 0;
        for (const char length : page.lacing) {
            const auto count = static_cast<std::uint8_t>(length);
            packet += page.body.substr(at, count);
            at += count;
            if (count == 255) continue;
            packets.push_back(packet);
            packet.clear();
        }
    }
    return packets;
}

std::vector<Page> WithSerial(std::vector<Page> pages, std::uint32_t serial) {
    for (Page& page : pages) page.serial = serial;
    return pages;
}

}  // namespace ogg_file
