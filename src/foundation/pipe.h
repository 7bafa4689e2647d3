// XPipe: an anonymous pipe whose read end stays here and whose write end is handed to somebody else.
#pragma once

#include "foundation/byte_store.h"
#include "foundation/file.h"
#include "platform/types.h"

class XPipe {
  public:
    XPipe() = default;
    XPipe(const XPipe&) = delete;
    XPipe& operator=(const XPipe&) = delete;
    ~XPipe() { Close(); }

    bool Create();  // closes what was held before
    // Gives the write end away as a handle that a child can inherit: the caller closes it. kInvalidHandle
    // when it is gone already or on failure; this object has lost it in every case.
    platform::Handle DetachWriteEnd();
    // Takes all that waits, without blocking: Cursor() bytes of the result, which may be 0 and need not fill
    // Size(). *failed is set when the pipe is closed or broken; what was read before that still stands.
    clByteStore* ReadAvailable(bool* failed);
    void Close();

    // Writes into the pipe; closed once the write end has been given away.
    XFile& Writer() { return mWriter; }
    platform::Handle ReadHandle() const { return mReadHandle; }
    platform::Handle WriteHandle() const { return mWriteHandle; }

  private:
    bool ReadOnce(bool* failed);

    XFile mReader;
    XFile mWriter;
    platform::Handle mReadHandle = platform::kInvalidHandle;
    platform::Handle mWriteHandle = platform::kInvalidHandle;
    clByteStore mBuffer;
};
