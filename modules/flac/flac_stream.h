// clFlacStream: FLAC files, decoded by libFLAC to the depth they have.
//
// A block is one frame of the file. Samples of 12 or 20 bits and the like stand at the top of the next whole
// number of bytes.
//
// Every frame says which samples it holds. So after damage the audio goes on in its place: what is lost in
// between, up to five seconds, is silence, and the length stays. What comes twice or out of order is left out.
// Behind the last sample that the header promises nothing is looked at: tags of other formats often stand there.
//
// The check sum over all audio is compared when a file has been decoded from its beginning to its end.
#pragma once

#include <FLAC/stream_decoder.h>

#include <exception>
#include <memory>
#include <vector>

#include "modules/flac/interleave.h"
#include "modules/support/audio_stream.h"
#include "modules/support/read_cursor.h"

class clFlacStream : public clAudioStream {
  public:
    using clAudioStream::clAudioStream;

    std::span<const std::uint8_t> Read() override;
    bool Seek(std::uint64_t frame) override;
    void AddPropertyRows(clIDTagList& rows) const override;

  private:
    struct Deleter {
        void operator()(FLAC__StreamDecoder* decoder) const { FLAC__stream_decoder_delete(decoder); }
    };
    // What the library calls.
    friend struct FlacCallbacks;
    void TakeMetadata(const FLAC__StreamMetadata& block);
    void TakeFrame(const FLAC__FrameHeader& header, const FLAC__int32* const rows[]);
    void TakeTrouble(FLAC__StreamDecoderErrorStatus status);

    bool ReadHeaders() override;
    bool Restart();
    bool HeadersAreRead() const;
    void TakeFacts();
    void FindLength();
    void Advance();
    void Step();
    bool DecodeAgain(std::uint64_t place, std::uint64_t begin);
    void Raise();
    void ReportTrouble(std::uint64_t frame);
    void AppendSilence(std::uint64_t end);
    std::uint8_t* Extend(std::uint64_t frames);
    void CompareCheckSum();
    bool SeekInLibrary(std::uint64_t frame);
    bool SeekByDecoding(std::uint64_t frame);

    clReadCursor mCursor{mFile};
    std::unique_ptr<FLAC__StreamDecoder, Deleter> mDecoder;
    FLAC__StreamMetadata_StreamInfo mStreamInfo{};
    bool mHasStreamInfo = false;
    std::optional<std::uint32_t> mMaskComment;
    clSampleShape mShape;

    // What the stream calls its first sample, which is not 0 when it was cut from a longer one. Numbers below are
    // counted from there.
    std::optional<std::uint64_t> mBegin;
    std::uint64_t mEnd = 0;             // behind the last frame
    std::uint64_t mNext = 0;            // that the library will give
    std::uint64_t mWanted = 0;          // the first that the caller wants
    bool mGoesOn = false;               // the library has more to give, for all it knows
    bool mIsWhole = false;              // and has given all so far
    std::vector<std::uint8_t> mBuffer;  // of which mAudioBytes hold audio
    std::size_t mAudioBytes = 0;
    bool mIsPending = false;  // the audio was not handed out yet

    // What the callbacks have to tell.
    std::exception_ptr mRaised;  // the library is C and must not see it
    std::uint32_t mWrites = 0;   // in this step
    bool mLostFrames = false;
    bool mLostMetadata = false;
    bool mChangedFormat = false;
};
