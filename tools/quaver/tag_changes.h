// TagChanges: what is to be done to the tags of files, put into the calls that do it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host.h"
#include "tags.h"

class TagChanges {
  public:
    // Reads the pictures. `objection` receives why it can't be done, and stays empty when it can.
    TagChanges(const TagsOptions& options, std::u16string& objection);

    // False at the first call that fails; what came before it is done.
    bool Apply(Host& host, const std::u16string& file) const;

  private:
    bool TakePicture(const std::u16string& argument, std::u16string& objection);

    bool mDeleteAll;
    std::vector<std::u16string> mDeletions;
    std::vector<TextRow> mRows;
};
