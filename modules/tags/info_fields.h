// The text fields of a WAVE file: its LIST chunks of type INFO, in RF64 files too.
#pragma once

#include <string>
#include <vector>

#include "modules/support/file_reader.h"
#include "modules/tags/tag_set.h"

struct InfoField {
    std::string id;  // four letters
    std::u16string text;
};

// Adds each field that isn't empty, in the order of the file; of two with one name the first. False when the
// file couldn't be read to its end, or is no WAVE file.
bool ReadInfoFields(clFileReader& file, std::vector<InfoField>& fields);

// The known ones as rows; of two with one meaning the first.
TagSet RowsOfInfo(const std::vector<InfoField>& fields);
// The fields that mean the name, the one to be written first.
std::vector<std::string> InfoIdsOfName(const std::u16string& name);
