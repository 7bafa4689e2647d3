#include "modules/tags/ape_items.h"

#include <iterator>
#include <string_view>

#include "modules/tags/picture_kinds.h"
#include "modules/tags/tag_text.h"

namespace ape {

namespace {

struct Key {
    std::u16string_view key;
    const char16_t* name;
};

// Where a key is not the row's name.
constexpr Key kKeys[] = {{u"ALBUM ARTIST", u"ALBUMARTIST"}, {u"DISC", u"DISCNUMBER"},
                         {u"MIXARTIST", u"REMIXER"},        {u"PUBLISHER", u"LABEL"},
                         {u"TRACK", u"TRACKNUMBER"},        {u"YEAR", u"DATE"}};

constexpr std::u16string_view kCover = u"COVER ART (";

std::u16string NameOf(const TagLib::String& key) {
    const std::u16string upper = UpperFromTagLib(key);
    for (const Key& row : kKeys)
        if (row.key == upper) return row.name;
    return upper;
}

bool IsPicture(const TagLib::APE::Item& item) {
    return item.type() == TagLib::APE::Item::Binary && NameOf(item.key()).starts_with(kCover);
}

// "COVER ART (FRONT)" says "Front" for "Front Cover"; the other kinds are called as they are in rows. The
// bytes begin with a text and a NUL.
TagPicture PictureOf(const TagLib::APE::Item& item) {
    std::u16string kind = NameOf(item.key()).substr(kCover.size());
    kind = kind.substr(0, kind.find(u')'));
    if (kind == u"FRONT" || kind == u"BACK") kind += u" COVER";
    TagPicture picture;
    picture.kind = kind == u"FRONT COVER" ? kFrontCover : PictureKind(u"PICTURE:" + kind).value_or(0);
    picture.bytes = FromTagLib(item.binaryData());
    const std::size_t end = picture.bytes.find('\0');
    picture.bytes.erase(0, end == std::string::npos ? end : end + 1);
    return picture;
}

template <class Wanted>
bool RemoveItems(TagLib::APE::Tag& tag, Wanted wanted) {
    TagLib::StringList keys;
    for (const auto& [key, item] : tag.itemListMap())
        if (wanted(item)) keys.append(key);
    for (const TagLib::String& key : keys) tag.removeItem(key);
    return !keys.isEmpty();
}

}  // namespace

TagSet Read(TagLib::APE::Tag& tag) {
    TagSet set;
    for (const auto& [key, item] : tag.itemListMap()) {
        if (item.type() == TagLib::APE::Item::Text) {
            for (const TagLib::String& value : item.values()) set.Add(NameOf(item.key()), FromTagLib(value));
        } else if (IsPicture(item)) {
            TagPicture picture = PictureOf(item);
            if (!picture.bytes.empty()) set.pictures.push_back(std::move(picture));
        }
    }
    return set;
}

bool Remove(TagLib::APE::Tag& tag, const std::u16string& name) {
    return RemoveItems(tag, [&](const TagLib::APE::Item& item) {
        return item.type() == TagLib::APE::Item::Text && NameOf(item.key()) == name;
    });
}

bool RemovePictures(TagLib::APE::Tag& tag) {
    return RemoveItems(tag, IsPicture);
}

}  // namespace ape
