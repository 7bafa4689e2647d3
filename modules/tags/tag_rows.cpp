#include "modules/tags/tag_rows.h"

#include "foundation/joined.h"
#include "modules/tags/picture_kinds.h"

namespace {

constexpr char16_t kBetweenValues = 0x1F;

std::u16string Clean(std::u16string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit < 0xD800 || unit > 0xDFFF) continue;
        const bool isPair =
            unit < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
        if (isPair)
            ++i;
        else
            text[i] = 0xFFFD;
    }
    return text;
}

void AddValues(const std::u16string& name, const std::u16string& value, TagSet& set) {
    for (std::size_t begin = 0; begin <= value.size();) {
        const std::size_t end = std::min(value.find(kBetweenValues, begin), value.size());
        set.Add(name, value.substr(begin, end - begin));
        begin = end + 1;
    }
}

}  // namespace

void AddRows(const TagSet& set, clIDTagList& tags) {
    for (const auto& [name, values] : set.text)
        for (const std::u16string& value : values) tags.Add(name.c_str(), value.c_str());
    for (const TagPicture& picture : set.pictures) {
        tags.AddBinary(PictureName(picture.kind).c_str(), picture.description.c_str(), picture.bytes.data(),
                       static_cast<std::uint32_t>(picture.bytes.size()));
    }
}

TagSet TakeRows(const clIDTagList& tags, const char16_t* file, const clModuleLog& log) {
    TagSet set;
    for (std::int32_t i = 0; i < tags.Count(); ++i) {
        const IDTagRow& row = tags.At(i);
        const std::u16string name = CleanName(row.name.Text());
        const std::u16string value = Clean(row.value.Text());
        const std::optional<std::int32_t> kind = PictureKind(name);
        if (row.art.Size() == 0) {
            if (!kind) AddValues(name, value, set);
        } else if (kind) {
            const auto* bytes = reinterpret_cast<const char*>(row.art.Data());
            set.pictures.push_back({*kind, value, std::string(bytes, row.art.Size())});
        } else {
            log.Information(
                file, Joined({row.name.Text(), u" is left out: only pictures are kept as bytes"}).Text());
        }
    }
    return set;
}

std::u16string CleanName(const char16_t* name) {
    return Upper(Clean(name));
}
