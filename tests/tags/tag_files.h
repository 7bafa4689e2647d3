// Sound files with tags, for the tests of modules/tags.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "modules/tags/tag_file.h"
#include "platform/file.h"
#include "support/codec/log_files.h"
#include "support/faults.h"
#include "support/temp_folder.h"

struct Row {
    std::u16string name;
    std::u16string value;
    std::string art;

    bool operator==(const Row&) const = default;
};
using Rows = std::vector<Row>;

void PrintTo(const Row& row, std::ostream* out);

// In an order that no container has a say in.
Rows Sorted(Rows rows);

// A kind of file, and an untagged one of it.
struct Sound {
    TagContainer container;
    const char16_t* name;
    std::string bytes;
};

const std::vector<Sound>& Sounds();
const Sound& SoundOf(TagContainer container);

// What a change of tags must leave as it is, worked out in the plainest way: the frames, the chunk, or the
// packets with their granule positions. Also expects every Ogg page to be numbered and summed up rightly.
std::string AudioOf(const Sound& kind, const std::string& file);

class TagTest : public testing::Test {
  protected:
    // As the entry of a fresh file; its path is the result.
    std::u16string Put(const Sound& sound);
    std::string Bytes(const Sound& sound) const { return mFolder.Read(sound.name); }

    bool Write(const Sound& sound, const Rows& rows);
    Rows Read(const Sound& sound);  // expects success
    bool Delete(const Sound& sound, const std::u16string& name);

    clModuleLog Log() const;
    std::vector<std::u16string> NamesInFolder() const;

    TempFolder mFolder;
    LogFiles mLog;
};

// A change is flushed to the disk, which takes long on some; where that is not what is tried it is left out.
class NoFlush {
  public:
    NoFlush();

  private:
    Faulty<platform::FlushFileBuffers> mFlushes;
};
