#include "modules/tags/picture_kinds.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "modules/tags/tag_set.h"

namespace {

constexpr std::u16string_view kPicture = u"PICTURE";

// By number.
constexpr std::u16string_view kKinds[] = {u"Other",
                                          u"File Icon",
                                          u"Other File Icon",
                                          u"Front Cover",
                                          u"Back Cover",
                                          u"Leaflet Page",
                                          u"Media",
                                          u"Lead Artist",
                                          u"Artist",
                                          u"Conductor",
                                          u"Band",
                                          u"Composer",
                                          u"Lyricist",
                                          u"Recording Location",
                                          u"During Recording",
                                          u"During Performance",
                                          u"Movie Screen Capture",
                                          u"Coloured Fish",
                                          u"Illustration",
                                          u"Band Logo",
                                          u"Publisher Logo"};

}  // namespace

std::int32_t KnownPictureKind(std::int64_t kind) {
    return kind >= 0 && kind < std::ssize(kKinds) ? static_cast<std::int32_t>(kind) : 0;
}

std::u16string PictureName(std::int32_t kind) {
    std::u16string name(kPicture);
    if (kind != kFrontCover) name.append(u":").append(kKinds[static_cast<std::size_t>(kind)]);
    return name;
}

std::optional<std::int32_t> PictureKind(const std::u16string& name) {
    const std::u16string upper = Upper(name);
    if (upper == kPicture) return kFrontCover;
    for (std::int32_t kind = 0; kind < std::ssize(kKinds); ++kind) {
        const std::u16string_view text = kKinds[static_cast<std::size_t>(kind)];
        if (upper == Upper(std::u16string(kPicture) + u":" + std::u16string(text))) return kind;
    }
    return std::nullopt;
}

const char* PictureMime(const std::string& bytes) {
    using namespace std::string_view_literals;
    const std::string_view all = bytes;
    if (all.starts_with("\xFF\xD8\xFF"sv)) return "image/jpeg";
    if (all.starts_with("\x89PNG\r\n\x1A\n"sv)) return "image/png";
    if (all.starts_with("GIF87a"sv) || all.starts_with("GIF89a"sv)) return "image/gif";
    if (all.starts_with("BM"sv)) return "image/bmp";
    if (all.starts_with("RIFF"sv) && all.substr(std::min<std::size_t>(8, all.size())).starts_with("WEBP"sv))
        return "image/webp";
    return "application/octet-stream";
}
