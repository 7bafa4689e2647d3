// Pages are those of RFC 3533: "OggS", version, flags, granule position, serial and page number, check sum,
// the number of pieces, their lengths, and the pieces. The largest has 65307 bytes, so a window of twice that
// is filled once for every page or more.
#include "modules/support/ogg_page.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "modules/support/little_endian.h"

namespace {

constexpr std::uint32_t kWindowBytes = 0x20000;
constexpr std::uint8_t kBegins = 2, kEnds = 4;
constexpr std::string_view kMark = "OggS";
constexpr std::size_t kCheckSum = 22;  // where it stands

// CRC-32 by its polynomial 0x04C11DB7, highest bit first, from 0 and without a final turn.
constexpr std::array<std::uint32_t, 256> kCheckTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        table[i] = i << 24;
        for (int bit = 0; bit < 8; ++bit) table[i] = table[i] << 1 ^ (table[i] >> 31 ? 0x04C11DB7u : 0);
    }
    return table;
}();

std::uint32_t CheckSum(std::uint32_t sum, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) sum = sum << 8 ^ kCheckTable[(sum >> 24) ^ byte];
    return sum;
}

// With nothing where the sum itself stands.
bool IsWhole(std::span<const std::uint8_t> page) {
    constexpr std::uint8_t kNothing[4] = {};
    std::uint32_t sum = CheckSum(0, page.first(kCheckSum));
    sum = CheckSum(sum, kNothing);
    return CheckSum(sum, page.subspan(kCheckSum + 4)) == Get32(&page[kCheckSum]);
}

std::string_view Text(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

struct Beginning {
    std::string_view bytes;  // of a stream's first packet
    const char16_t* name;
};

constexpr Beginning kBeginnings[] = {
    {"\1vorbis", u"Vorbis"}, {"OpusHead", u"Opus"},     {"\177FLAC", u"FLAC"}, {"fLaC", u"FLAC"},
    {"Speex   ", u"Speex"},  {"\200theora", u"Theora"}, {"CELT    ", u"CELT"}, {"PCM     ", u"PCM"},
    {"BBCD", u"Dirac"},      {"\200kate", u"Kate"},     {"OVP80", u"VP8"},     {"\1video", u"video"},
    {"\1audio", u"audio"},   {"fishead", u"Skeleton"},
};

const char16_t* NameOf(std::span<const std::uint8_t> packet) {
    for (const Beginning& each : kBeginnings)
        if (Text(packet).starts_with(each.bytes)) return each.name;
    return u"an unknown format";
}

}  // namespace

// The next `count` bytes, or as many as there are.
std::span<const std::uint8_t> clOggPages::Look(std::uint32_t count) {
    const std::uint64_t windowEnd = mWindowPosition + mWindow.size();
    const bool isInside = mPosition >= mWindowPosition && mPosition <= windowEnd;
    std::size_t start = isInside ? static_cast<std::size_t>(mPosition - mWindowPosition) : mWindow.size();
    if (!isInside || (windowEnd - mPosition < count && windowEnd < mFile.Size())) {
        mWindow.erase(mWindow.begin(), mWindow.begin() + static_cast<std::ptrdiff_t>(start));
        mWindowPosition = mPosition;
        start = 0;
        const auto held = static_cast<std::uint32_t>(mWindow.size());
        std::uint32_t got = 0;
        mWindow.resize(kWindowBytes);
        mFile.Read(mPosition + held, &mWindow[held], kWindowBytes - held, &got);
        mWindow.resize(held + got);
    }
    const std::span<const std::uint8_t> window(mWindow);
    return window.subspan(start, std::min<std::size_t>(count, window.size() - start));
}

// Goes on to the next mark of a page; false when there is none, and all was passed over.
bool clOggPages::FindMark() {
    for (;;) {
        const std::string_view bytes = Text(Look(clOggPage::kMostBytes));
        const std::size_t at = bytes.find(kMark);
        mPosition += std::min(at, bytes.size() - std::min(bytes.size(), kMark.size() - 1));
        if (at != std::string_view::npos) return true;
        if (bytes.size() == clOggPage::kMostBytes) continue;
        mPosition += std::min(bytes.size(), kMark.size() - 1);
        return false;
    }
}

bool clOggPages::ReadPage(clOggPage& page) {
    const std::span<const std::uint8_t> bytes = Look(clOggPage::kMostBytes);
    if (bytes.size() < clOggPage::kHeadBytes || bytes[4] != 0) return false;
    const std::size_t pieces = bytes[26];
    if (bytes.size() < clOggPage::kHeadBytes + pieces) return false;
    page.lacing = bytes.subspan(clOggPage::kHeadBytes, pieces);
    std::size_t bodyBytes = 0;
    for (const std::uint8_t length : page.lacing) bodyBytes += length;
    const std::size_t bodyStart = clOggPage::kHeadBytes + pieces;
    if (bytes.size() - bodyStart < bodyBytes || !IsWhole(bytes.first(bodyStart + bodyBytes))) return false;
    page.body = bytes.subspan(bodyStart, bodyBytes);
    page.position = mPosition;
    page.begins = (bytes[5] & kBegins) != 0;
    page.ends = (bytes[5] & kEnds) != 0;
    page.granule = static_cast<std::int64_t>(Get64(&bytes[6]));
    page.serial = Get32(&bytes[14]);
    page.number = Get32(&bytes[18]);
    return true;
}

bool clOggPages::Next(clOggPage& page) {
    const std::uint64_t from = mPosition;
    for (; FindMark(); ++mPosition) {
        if (!ReadPage(page)) continue;
        page.skipped = page.position - from;
        mPosition = page.End();
        return true;
    }
    page = {};
    page.position = mPosition;
    page.skipped = mPosition - from;
    return false;
}

XString OggContents(clFileReader& file) {
    constexpr int kMostStreams = 16;
    XString names;
    clOggPages pages(file);
    clOggPage page;
    for (int i = 0; i < kMostStreams && pages.Next(page) && page.begins && page.skipped == 0; ++i) {
        if (!names.IsEmpty()) names += u" and ";
        names += NameOf(page.body);
    }
    return names;
}
