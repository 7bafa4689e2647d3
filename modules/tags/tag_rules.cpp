// The rules are few: other names in use for a row, numbers with a total, Opus's own gain, genres in ID3, and
// what each container can't hold.
#include "modules/tags/tag_rules.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>

#include "foundation/joined.h"

namespace {

using Values = TagSet::Values;

struct Alias {
    std::u16string_view other;
    const char16_t* name;
};

constexpr Alias kAliases[] = {
    {u"TOTALTRACKS", u"TRACKTOTAL"}, {u"TOTALDISCS", u"DISCTOTAL"}, {u"ALBUM ARTIST", u"ALBUMARTIST"}};

struct Numbered {
    const char16_t* number;
    const char16_t* total;
};

constexpr Numbered kNumbered[] = {{u"TRACKNUMBER", u"TRACKTOTAL"}, {u"DISCNUMBER", u"DISCTOTAL"}};

struct Gain {
    const char16_t* row;
    const char16_t* opus;
};

constexpr Gain kGains[] = {{u"REPLAYGAIN_TRACK_GAIN", u"R128_TRACK_GAIN"},
                           {u"REPLAYGAIN_ALBUM_GAIN", u"R128_ALBUM_GAIN"}};
constexpr std::u16string_view kPeaks[] = {u"REPLAYGAIN_TRACK_PEAK", u"REPLAYGAIN_ALBUM_PEAK"};

// The loudness that Opus's gain leads to lies this much below ReplayGain's.
constexpr double kOpusReference = 5.0;
constexpr double kOpusUnits = 256.0;  // a decibel in Q7.8

bool IsXiph(TagContainer container) {
    return container == TagContainer::flac || container == TagContainer::oggVorbis ||
           container == TagContainer::oggOpus;
}

std::u16string RowName(const std::u16string& name) {
    const auto* alias = std::ranges::find(kAliases, name, &Alias::other);
    return alias == std::end(kAliases) ? name : std::u16string(alias->name);
}

void Append(TagSet& set, const std::u16string& name, const Values& values) {
    for (const std::u16string& value : values) set.Add(name, value);
}

Values Take(TagSet& set, const std::u16string& name) {
    auto node = set.text.extract(name);
    return node ? std::move(node.mapped()) : Values();
}

// "3/12" becomes a number and a total; either may be missing.
void SplitNumbers(const Numbered& names, TagSet& set) {
    const Values numbers = Take(set, names.number);
    const Values totals = Take(set, names.total);
    for (const std::u16string& value : numbers) {
        const std::size_t slash = value.find(u'/');
        set.Add(names.number, value.substr(0, slash));
        if (slash != std::u16string::npos) set.Add(names.total, value.substr(slash + 1));
    }
    Append(set, names.total, totals);
}

void JoinNumbers(const Numbered& names, TagSet& set) {
    Values numbers = Take(set, names.number);
    const Values totals = Take(set, names.total);
    numbers.resize(std::max(numbers.size(), totals.size()));
    for (std::size_t i = 0; i < totals.size(); ++i) numbers[i] += u"/" + totals[i];
    Append(set, names.number, numbers);
}

std::string Ascii(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) bytes += unit < 0x80 ? static_cast<char>(unit) : '?';
    return bytes;
}

// The number that a text begins with, behind blanks and a plus sign, such as that of "-7.03 dB".
bool Number(const std::u16string& text, double& number) {
    const std::string bytes = Ascii(text);
    std::size_t begin = bytes.find_first_not_of(' ');
    if (begin == std::string::npos) return false;
    if (bytes[begin] == '+') ++begin;
    const char* end = bytes.data() + bytes.size();
    return std::from_chars(bytes.data() + begin, end, number).ec == std::errc() && std::isfinite(number);
}

std::u16string Decibels(double gain) {
    const long hundredths = std::lround(gain * 100);
    const long size = hundredths < 0 ? -hundredths : hundredths;
    std::string text = std::to_string(size);
    text.insert(0, text.size() < 3 ? 3 - text.size() : 0, '0');
    text = (hundredths < 0 ? "-" : "") + text.insert(text.size() - 2, ".") + " dB";
    return std::u16string(text.begin(), text.end());
}

void ReadOpusGain(const Gain& gain, TagSet& set) {
    Values values;
    for (const std::u16string& value : Take(set, gain.opus)) {
        double units = 0;
        if (Number(value, units) && std::abs(units) <= 32768)
            values.push_back(Decibels(units / kOpusUnits + kOpusReference));
    }
    if (values.empty()) return;
    set.text[gain.row] = std::move(values);
}

// What a row must not be for a container, as words; null when it may be.
const char16_t* Refusal(TagContainer container, const std::u16string& name) {
    if (!IsXiph(container)) return nullptr;
    const bool isLegal =
        std::ranges::all_of(name, [](char16_t unit) { return unit >= 0x20 && unit <= 0x7D && unit != u'='; });
    if (!isLegal || name == u"METADATA_BLOCK_PICTURE" || name == u"COVERART")
        return u"is no name that this kind of file can have";
    if (container == TagContainer::oggOpus && std::ranges::find(kPeaks, name) != std::end(kPeaks))
        return u"is not kept in Opus files";
    return nullptr;
}

// FLAC gives the length of a block in 24 bits and ID3 that of a tag in 28.
constexpr std::size_t kLargestFlacBlock = 0xFFFFFF;
constexpr std::size_t kLargestTag = 0xFFFFFFF;
constexpr std::size_t kAroundPicture = 64;

std::size_t LargestPicture(TagContainer container, const TagPicture& picture) {
    const std::size_t most = container == TagContainer::flac ? kLargestFlacBlock : kLargestTag;
    return most - std::min(most, kAroundPicture + 3 * picture.description.size());
}

void WriteOpusGain(const Gain& gain, TagSet& set, const char16_t* file, const clModuleLog& log) {
    for (const std::u16string& value : Take(set, gain.row)) {
        double decibels = 0;
        const bool good = Number(value, decibels);
        const double units = good ? std::round((decibels - kOpusReference) * kOpusUnits) : 1e9;
        if (std::abs(units) > 32767) {
            log.Information(file, Joined({gain.row, u" is left out: ", value.c_str(),
                                          u" is no gain that Opus files can say"})
                                      .Text());
            continue;
        }
        const std::string text = std::to_string(std::lround(units));
        set.Add(gain.opus, std::u16string(text.begin(), text.end()));
    }
}

}  // namespace

TagSet RowsOfFields(TagContainer container, const TagSet& fields) {
    TagSet rows;
    rows.pictures = fields.pictures;
    for (const auto& [name, values] : fields.text) Append(rows, RowName(name), values);
    for (const Numbered& names : kNumbered) SplitNumbers(names, rows);
    if (container == TagContainer::oggOpus)
        for (const Gain& gain : kGains) ReadOpusGain(gain, rows);
    return rows;
}

TagSet FieldsOfRows(TagContainer container, const TagSet& rows, const char16_t* file,
                    const clModuleLog& log) {
    TagSet fields;
    for (const auto& [name, values] : rows.text) {
        const char16_t* refusal = Refusal(container, name);
        if (!refusal)
            Append(fields, name, values);
        else
            log.Information(file, Joined({name.c_str(), u" is left out: it ", refusal}).Text());
    }
    for (const TagPicture& picture : rows.pictures) {
        if (picture.bytes.size() <= LargestPicture(container, picture))
            fields.pictures.push_back(picture);
        else
            log.Information(file, u"a picture is left out: it is too large for this kind of file");
    }
    if (!IsXiph(container))
        for (const Numbered& names : kNumbered) JoinNumbers(names, fields);
    if (container == TagContainer::oggOpus)
        for (const Gain& gain : kGains) WriteOpusGain(gain, fields, file, log);
    return fields;
}

std::u16string GroupOfName(const std::u16string& name) {
    const std::u16string row = RowName(name);
    for (const Numbered& names : kNumbered)
        if (row == names.total) return names.number;
    for (const Gain& gain : kGains)
        if (row == gain.opus) return gain.row;
    return row;
}
