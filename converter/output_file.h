// OutputFile: the destination, which appears under its own name only when it is complete.
//
// The encoder writes a marked temporary beside the destination: ".qvpart-", sixteen digits, and the
// destination's own extension. Commit renames it in one step over whatever stands there; without Commit it is
// removed and an existing destination stays untouched. A killed converter can't remove its temporary, so each
// one is accompanied by a named event of the same digits that dies with its process, and the next converter
// to write into that folder removes every marked file whose event is gone.
#pragma once

#include <string>

#include "platform/types.h"

class OutputFile {
  public:
    explicit OutputFile(std::u16string destination);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    // Takes a temporary name and creates the file, empty. False when the folder does not let us.
    bool Create();
    const std::u16string& TemporaryName() const { return mTemporary; }
    // The temporary becomes the destination. Whoever had it open must have closed it.
    bool Commit();

  private:
    void RemoveAbandoned() const;

    const std::u16string mDestination;
    std::u16string mTemporary;
    platform::Handle mMark = platform::kNullHandle;
};
