#include "picture.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::u16string_view kFrontCover = u"PICTURE";

char16_t Upper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
}

bool SameWord(std::u16string_view one, std::u16string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t a, char16_t b) { return Upper(a) == Upper(b); });
}

struct Signature {
    std::size_t offset;
    std::string_view bytes;
    std::u16string_view type;
};

constexpr Signature kSignatures[] = {{0, "\xFF\xD8\xFF", u"image/jpeg"},
                                     {0, "\x89PNG\r\n\x1A\n", u"image/png"},
                                     {0, "GIF87a", u"image/gif"},
                                     {0, "GIF89a", u"image/gif"},
                                     {0, "BM", u"image/bmp"},
                                     {0, {"II*\0", 4}, u"image/tiff"},
                                     {0, {"MM\0*", 4}, u"image/tiff"},
                                     {8, "WEBP", u"image/webp"}};

}  // namespace

std::u16string PictureName(const std::u16string& kind) {
    const bool front = kind.empty() || SameWord(kind, u"Front Cover");
    return std::u16string(kFrontCover) + (front ? u"" : u":" + kind);
}

bool IsPicture(const std::u16string& rowName, const std::u16string& kind) {
    return SameWord(rowName, PictureName(kind));
}

std::u16string ImageType(const std::vector<std::uint8_t>& bytes) {
    const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const Signature& signature : kSignatures) {
        if (all.size() >= signature.offset && all.substr(signature.offset).starts_with(signature.bytes))
            return std::u16string(signature.type);
    }
    return u"application/octet-stream";
}
