// clMp3Stream: MPEG audio of all three layers, decoded by libmpg123 to 32-bit float.
//
// A block is one frame of the file: up to 1152 samples a channel. What the encoder has put in front of the
// sound and behind it is taken off again where the file says how much that is, so length and seeks are exact.
#pragma once

#include <memory>
#include <optional>

#include "modules/mp3/info_frame.h"
#include "modules/support/audio_stream.h"
#include "modules/support/read_cursor.h"

struct mpg123_handle_struct;  // libmpg123's own name for a decoder

class clMp3Stream : public clAudioStream {
  public:
    using clAudioStream::clAudioStream;
    ~clMp3Stream() override;

    std::span<const std::uint8_t> Read() override;
    bool Seek(std::uint64_t frame) override;
    void AddPropertyRows(clIDTagList& rows) const override;

  private:
    bool ReadHeaders() override;
    bool StartLibrary();
    void TakeFormat();
    void TakeLength();
    bool FormatFits();
    void LookAtFrame();
    bool CheckSumIsWrong(std::uint64_t position, bool isMpeg1, bool isMono);
    void ReportEnd(int result);
    void LookBehindLastFrame();

    mpg123_handle_struct* mDecoder = nullptr;
    clReadCursor mCursor{mFile};
    std::optional<clInfoFrame> mInfo;
    XString mVersion;
    const char16_t* mRateMode = u"";
    std::uint64_t mNextFrame = 0;  // where in the file the next frame must begin; 0 when nobody knows
    std::uint64_t mLastFrameEnd = 0;
};
