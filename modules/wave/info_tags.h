// The text fields of a WAVE file: its LIST chunks of type INFO.
#pragma once

#include "foundation/id_tag_list.h"
#include "modules/support/file_reader.h"

// Adds a row for each known field that isn't empty, in the order of the file; of two with one meaning the
// first. False when the file couldn't be read to its end.
bool ReadInfoTags(clFileReader& file, clIDTagList& tags);
