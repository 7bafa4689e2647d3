// The rows of a list, taken apart and put together.
#pragma once

#include "foundation/id_tag_list.h"
#include "modules/support/module_log.h"
#include "modules/tags/tag_set.h"

// Text by name, then the pictures.
void AddRows(const TagSet& set, clIDTagList& tags);

// Names in upper case, values parted at U+001F, halves of characters replaced by U+FFFD. Rows that say
// nothing are left out: without a name, without a value, or under a picture's name without bytes. Bytes under
// any other name are left out with a line of information.
TagSet TakeRows(const clIDTagList& tags, const char16_t* file, const clModuleLog& log);

// A name as rows have it.
std::u16string CleanName(const char16_t* name);
