// What stands in a file, and the rows that the world sees: the way from one to the other and back.
//
// The names of rows are the same for every container, and so is what their values look like: a track number
// is apart from the number of tracks, and gain is REPLAYGAIN_… in decibels. Neither direction touches a name
// that it has no rule for.
#pragma once

#include "modules/support/module_log.h"
#include "modules/tags/tag_file.h"
#include "modules/tags/tag_set.h"

// Rows, as they are in every container.
TagSet RowsOfFields(TagContainer container, const TagSet& fields);

// What has to stand in the file for these rows. What the container can't hold is left out, with a line of
// information each under the file's name.
TagSet FieldsOfRows(TagContainer container, const TagSet& rows, const char16_t* file, const clModuleLog& log);

// The name under which all fields stand that make one row or are made together: for "TRACKTOTAL" and "TOTALTRACKS"
// it is "TRACKNUMBER".
std::u16string GroupOfName(const std::u16string& name);
