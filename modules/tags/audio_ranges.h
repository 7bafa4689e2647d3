// Where in a file the audio is: all that a change of tags must leave as it was, stretch by stretch.
#pragma once

#include <memory>
#include <vector>

#include "modules/support/file_reader.h"
#include "modules/tags/tag_file.h"

struct clByteRange {
    std::uint64_t position;
    std::uint64_t length;
};

class clAudioRanges {
  public:
    virtual ~clAudioRanges() = default;
    // The next stretch, from front to end. False behind the last one, and when reading failed.
    virtual bool Next(clByteRange& range) = 0;
    // Asked behind the last stretch: false when what lies between them may not be changed after all.
    virtual bool IsSound() const { return true; }
};

// Null when the file is not what the container calls for, or is damaged in a way that leaves in doubt what of
// it is audio.
std::unique_ptr<clAudioRanges> FindAudio(TagContainer container, clFileReader& file);
std::unique_ptr<clAudioRanges> FindOggAudio(TagContainer container, clFileReader& file);

// A list of stretches that is known from the start.
class clRangeList : public clAudioRanges {
  public:
    explicit clRangeList(std::vector<clByteRange> ranges) : mRanges(std::move(ranges)) {}
    bool Next(clByteRange& range) override {
        if (mNext == mRanges.size()) return false;
        range = mRanges[mNext++];
        return true;
    }

  private:
    const std::vector<clByteRange> mRanges;
    std::size_t mNext = 0;
};

// True when both hold the same bytes behind one another, however they are cut. False also when one can't be
// read: its Error() tells.
bool IsSameAudio(clAudioRanges& first, clFileReader& firstFile, clAudioRanges& second,
                 clFileReader& secondFile);
