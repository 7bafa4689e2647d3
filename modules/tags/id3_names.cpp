// Where a field has a frame of its own, programs look for it there; anything else is a user text frame (TXXX)
// under the field's name, or under the description that taggers have agreed on.
#include "modules/tags/id3_names.h"

#include <taglib/id3v1genres.h>

#include <algorithm>
#include <iterator>

#include "modules/tags/tag_text.h"

namespace id3 {

namespace {

struct Frame {
    std::string_view frame;
    std::u16string_view name;
};

constexpr Frame kFrames[] = {
    {"TALB", u"ALBUM"},
    {"TBPM", u"BPM"},
    {"TCMP", u"COMPILATION"},
    {"TCOM", u"COMPOSER"},
    {"TCON", u"GENRE"},
    {"TCOP", u"COPYRIGHT"},
    {"TDEN", u"ENCODINGTIME"},
    {"TDLY", u"PLAYLISTDELAY"},
    {"TDOR", u"ORIGINALDATE"},
    {"TDRC", u"DATE"},
    {"TDRL", u"RELEASEDATE"},
    {"TDTG", u"TAGGINGDATE"},
    {"TENC", u"ENCODEDBY"},
    {"TEXT", u"LYRICIST"},
    {"TFLT", u"FILETYPE"},
    {"TIT1", u"WORK"},
    {"TIT2", u"TITLE"},
    {"TIT3", u"SUBTITLE"},
    {"TKEY", u"INITIALKEY"},
    {"TLAN", u"LANGUAGE"},
    {"TLEN", u"LENGTH"},
    {"TMED", u"MEDIA"},
    {"TMOO", u"MOOD"},
    {"TOAL", u"ORIGINALALBUM"},
    {"TOFN", u"ORIGINALFILENAME"},
    {"TOLY", u"ORIGINALLYRICIST"},
    {"TOPE", u"ORIGINALARTIST"},
    {"TOWN", u"OWNER"},
    {"TPE1", u"ARTIST"},
    {"TPE2", u"ALBUMARTIST"},
    {"TPE3", u"CONDUCTOR"},
    {"TPE4", u"REMIXER"},
    {"TPOS", u"DISCNUMBER"},
    {"TPRO", u"PRODUCEDNOTICE"},
    {"TPUB", u"LABEL"},
    {"TRCK", u"TRACKNUMBER"},
    {"TRSN", u"RADIOSTATION"},
    {"TRSO", u"RADIOSTATIONOWNER"},
    {"TSO2", u"ALBUMARTISTSORT"},
    {"TSOA", u"ALBUMSORT"},
    {"TSOC", u"COMPOSERSORT"},
    {"TSOP", u"ARTISTSORT"},
    {"TSOT", u"TITLESORT"},
    {"TSRC", u"ISRC"},
    {"TSSE", u"ENCODING"},
    {"TSST", u"DISCSUBTITLE"},
    {"GRP1", u"GROUPING"},
    {"MVIN", u"MOVEMENTNUMBER"},
    {"MVNM", u"MOVEMENTNAME"},
    {"WCOP", u"COPYRIGHTURL"},
    {"WOAF", u"FILEWEBPAGE"},
    {"WOAR", u"ARTISTWEBPAGE"},
    {"WOAS", u"AUDIOSOURCEWEBPAGE"},
    {"WORS", u"RADIOSTATIONWEBPAGE"},
    {"WPAY", u"PAYMENTWEBPAGE"},
    {"WPUB", u"PUBLISHERWEBPAGE"},
};

struct Description {
    std::u16string_view description;
    std::u16string_view name;
};

constexpr Description kDescriptions[] = {
    {u"MusicBrainz Album Id", u"MUSICBRAINZ_ALBUMID"},
    {u"MusicBrainz Artist Id", u"MUSICBRAINZ_ARTISTID"},
    {u"MusicBrainz Album Artist Id", u"MUSICBRAINZ_ALBUMARTISTID"},
    {u"MusicBrainz Release Group Id", u"MUSICBRAINZ_RELEASEGROUPID"},
    {u"MusicBrainz Release Track Id", u"MUSICBRAINZ_RELEASETRACKID"},
    {u"MusicBrainz Work Id", u"MUSICBRAINZ_WORKID"},
    {u"MusicBrainz Album Release Country", u"RELEASECOUNTRY"},
    {u"MusicBrainz Album Status", u"RELEASESTATUS"},
    {u"MusicBrainz Album Type", u"RELEASETYPE"},
    {u"Acoustid Id", u"ACOUSTID_ID"},
    {u"Acoustid Fingerprint", u"ACOUSTID_FINGERPRINT"},
    {u"MusicIP PUID", u"MUSICIP_PUID"},
};

constexpr Description kRoles[] = {
    {u"arranger", u"ARRANGER"}, {u"engineer", u"ENGINEER"}, {u"producer", u"PRODUCER"},
    {u"DJ-mix", u"DJMIXER"},    {u"mix", u"MIXER"},
};

constexpr std::u16string_view kPerformer = u"PERFORMER:";

}  // namespace

std::string_view FrameOfName(std::u16string_view name) {
    const auto* found = std::ranges::find(kFrames, name, &Frame::name);
    return found == std::end(kFrames) ? std::string_view() : found->frame;
}

std::u16string NameOfFrame(std::string_view frame) {
    const auto* found = std::ranges::find(kFrames, frame, &Frame::frame);
    return found == std::end(kFrames) ? std::u16string() : std::u16string(found->name);
}

std::u16string DescriptionOfName(const std::u16string& name) {
    const auto* found = std::ranges::find(kDescriptions, name, &Description::name);
    return found == std::end(kDescriptions) ? name : std::u16string(found->description);
}

std::u16string NameOfDescription(const std::u16string& description) {
    const std::u16string upper = Upper(description);
    for (const Description& row : kDescriptions)
        if (Upper(std::u16string(row.description)) == upper) return std::u16string(row.name);
    return upper;
}

std::u16string RoleOfName(std::string_view frame, const std::u16string& name) {
    if (frame == "TMCL") return name.starts_with(kPerformer) ? name.substr(kPerformer.size()) : u"";
    const auto* found = std::ranges::find(kRoles, name, &Description::name);
    return found == std::end(kRoles) ? std::u16string() : std::u16string(found->description);
}

std::u16string NameOfRole(std::string_view frame, const std::u16string& role) {
    const std::u16string upper = Upper(role);
    if (frame == "TMCL") return upper.empty() ? upper : std::u16string(kPerformer) + upper;
    for (const Description& row : kRoles)
        if (Upper(std::u16string(row.description)) == upper) return std::u16string(row.name);
    return {};
}

std::u16string Genre(const std::u16string& text) {
    const auto isNumber = [](std::u16string_view digits) {
        return !digits.empty() && digits.size() <= 3 &&
               digits.find_first_not_of(u"0123456789") == std::u16string_view::npos;
    };
    const std::size_t close = text.starts_with(u'(') ? text.find(u')') : std::u16string::npos;
    if (close != std::u16string::npos) {
        const std::u16string rest = text.substr(close + 1);
        return Genre(rest.empty() ? text.substr(1, close - 1) : rest);
    }
    if (!isNumber(text)) return text;
    const int number = ToTagLib(text).toInt();
    const std::u16string name = FromTagLib(TagLib::ID3v1::genre(number));
    return name.empty() ? text : name;
}

}  // namespace id3
