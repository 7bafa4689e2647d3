// XOutputFile: a file that appears under its own name only when it is complete.
//
// Whoever makes it writes a marked temporary beside the destination: ".qvpart-", sixteen digits, and the
// destination's own extension. Commit renames it in one step over whatever stands there; without Commit it is
// removed and an existing destination stays untouched. A killed program can't remove its temporary, so each
// one is accompanied by a named event of the same digits that dies with its process, and the next one to
// write into that folder removes every marked file whose event is gone.
#pragma once

#include <string>

#include "platform/types.h"

class XOutputFile {
  public:
    explicit XOutputFile(std::u16string destination);
    XOutputFile(const XOutputFile&) = delete;
    XOutputFile& operator=(const XOutputFile&) = delete;
    ~XOutputFile();

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
