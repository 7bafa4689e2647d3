// clSndfileStream: what libsndfile reads and the other modules don't.
//
// Integer and float samples come at the depth of the file, everything coded as 16 bits. A block has at most
// kBlockFrames frames.
#pragma once

#include <memory>
#include <vector>

#include "modules/support/audio_stream.h"
#include "modules/support/read_cursor.h"

struct sf_private_tag;  // libsndfile's own name for an open file

class clSndfileStream : public clAudioStream {
  public:
    static constexpr std::uint32_t kBlockFrames = 4096;

    using clAudioStream::clAudioStream;
    ~clSndfileStream() override;

    std::span<const std::uint8_t> Read() override;
    bool Seek(std::uint64_t frame) override;

  private:
    // How samples are taken out of the library.
    enum class Width { unsigned8, short16, packed24, int32, float32, float64 };

    bool ReadHeaders() override;
    void TakeFormat(int format);
    void TakeChannelMap();
    void TakeLength(std::int64_t counted);
    std::uint64_t ReadFrames();
    std::int64_t TakeFrames();
    void Pack();
    void ReportWhatIsMissing();

    sf_private_tag* mSound = nullptr;
    clReadCursor mCursor{mFile};
    Width mWidth = Width::short16;
    std::vector<std::uint8_t> mBlock;
    std::vector<std::int32_t> mIntegers;  // where the library has no form that is ours
    std::uint64_t mPosition = 0;          // in frames
    std::uint64_t mMissingBytes = 0;
};
