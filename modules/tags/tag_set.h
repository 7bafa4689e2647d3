// TagSet: the tags of a file as text and pictures, free of any container.
//
// The same shape serves twice: as the fields that stand in a file, where a track number may read "3/12", and
// as the rows that the world sees, where it never does (tag_rules.h leads from one to the other).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

inline constexpr std::int32_t kFrontCover = 3;

// Of ASCII letters only.
inline std::u16string Upper(std::u16string text) {
    for (char16_t& unit : text)
        if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - u'a' + u'A');
    return text;
}

struct TagPicture {
    std::int32_t kind = kFrontCover;  // 0 to 20, as ID3 and FLAC number them
    std::u16string description;
    std::string bytes;

    bool operator==(const TagPicture&) const = default;
};

struct TagSet {
    using Values = std::vector<std::u16string>;

    std::map<std::u16string, Values> text;  // by upper-case name; no name without a value
    std::vector<TagPicture> pictures;

    bool IsEmpty() const { return text.empty() && pictures.empty(); }
    void Add(const std::u16string& name, std::u16string value) {
        if (!name.empty() && !value.empty()) text[name].push_back(std::move(value));
    }
    // The values of a name, none for one that isn't there.
    const Values& At(const std::u16string& name) const {
        static const Values kNone;
        const auto found = text.find(name);
        return found == text.end() ? kNone : found->second;
    }
    // Takes from `other` the names that it alone has, and its pictures when there were none.
    void Complete(TagSet other) {
        text.merge(other.text);
        if (pictures.empty()) pictures = std::move(other.pictures);
    }

    bool operator==(const TagSet&) const = default;
};
