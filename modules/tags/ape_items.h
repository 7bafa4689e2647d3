// The items of an APE tag, which MPEG files carry behind their audio: read, and removed, never written.
#pragma once

#include <taglib/apetag.h>

#include "modules/tags/tag_set.h"

namespace ape {

TagSet Read(TagLib::APE::Tag& tag);
// True when there was such an item.
bool Remove(TagLib::APE::Tag& tag, const std::u16string& name);
bool RemovePictures(TagLib::APE::Tag& tag);

}  // namespace ape
