// clWaveFile: a WAVE file opened, with what its headers say and what it really holds.
#pragma once

#include <cstdint>

#include "modules/support/chunk_walk.h"
#include "modules/support/file_reader.h"
#include "modules/support/module_log.h"
#include "modules/wave/wave_format.h"

class clWaveFile {
  public:
    // Reads the headers. Otherwise the trouble is in the log, named by the path, and nothing is open.
    bool Open(const char16_t* path, const clModuleLog& log);
    void Close() { mReader.Close(); }
    bool IsOpen() const { return mReader.IsOpen(); }

    clFileReader& Reader() { return mReader; }
    const XString& Path() const { return mPath; }
    const clWaveFormat& Format() const { return mFormat; }
    std::uint64_t Size() const { return mReader.Size(); }
    bool Is64() const { return mIs64; }  // RF64 or BW64

    // Where the audio stands and how many bytes of it there are: whole frames of plain samples; coded data as
    // they are.
    std::uint64_t AudioPosition() const { return mAudio.position; }
    std::uint64_t AudioBytes() const;
    std::uint64_t ClaimedBytes() const { return mAudio.claimed; }
    std::uint64_t MissingBytes() const { return mAudio.claimed - mAudio.available; }
    bool LengthIsOpen() const { return mAudio.isOpen; }  // the writer left it open: all to the end is audio

    std::uint64_t Frames() const;
    std::uint64_t LengthMs() const;

  private:
    XString ReadHeaders();
    XString FindChunks(clChunkWalk& walk);
    XString TakeFormat(const clChunk& chunk);
    void TakeFact(const clChunk& chunk);

    clFileReader mReader;
    XString mPath;
    clWaveFormat mFormat;
    clChunk mAudio;
    bool mIs64 = false;
    std::uint64_t mFactFrames = 0;  // 0 for none
};
