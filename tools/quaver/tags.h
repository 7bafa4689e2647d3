// quaver tags: reading and changing the tags of files.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exit_codes.h"

struct TagsOptions {
    using Pair = std::pair<std::u16string, std::u16string>;

    std::vector<std::u16string> files;
    bool deleteAll = false;                  // before anything else
    std::vector<std::u16string> deletions;   // names
    std::vector<Pair> settings;              // name and value; a name that comes again has several values
    std::vector<std::u16string> picturesIn;  // "[KIND=]FILE"
    std::optional<Pair> pictureOut;          // the file to write and the kind, which may be empty
    bool overwrite = false;
    bool json = false;
    bool quiet = false;

    bool Changes() const {
        return deleteAll || !deletions.empty() || !settings.empty() || !picturesIn.empty();
    }
};

ExitCode RunTags(const TagsOptions& options);
