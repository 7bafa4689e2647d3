// The fields and pictures of an ID3v2 tag.
#pragma once

#include <taglib/id3v2tag.h>

#include "modules/tags/tag_set.h"

namespace id3 {

TagSet Read(const TagLib::ID3v2::Tag& tag);
// What stood under that name goes; no values leave nothing in its place. Other frames aren't touched.
void SetText(TagLib::ID3v2::Tag& tag, const std::u16string& name, const TagSet::Values& values);
// Pictures that are there already stay as they are.
void SetPictures(TagLib::ID3v2::Tag& tag, std::vector<TagPicture> pictures);
void Clear(TagLib::ID3v2::Tag& tag);

}  // namespace id3
