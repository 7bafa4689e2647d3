// clOggStream: sound in an Ogg file, whichever library decodes it.
//
// A codec brings the calls of its library; decided here is what holds for all:
//
// - Samples are 32-bit float and not clipped. A block is what the library gives at once, mostly one packet.
// - A file may be a chain of parts (see ogg_parts.h). They are played one after the other, each by the
//   library as a file of its own, as long as sample rate and channels stay. The first one that differs ends
//   it, in words. One that can't be decoded is left out, in words.
// - Damage is looked for beside the decoding (see ogg_watch.h). A file that lacks its end is damaged too.
#pragma once

#include <vector>

#include "modules/support/audio_stream.h"
#include "modules/support/ogg_cursor.h"
#include "modules/support/ogg_watch.h"

class clOggStream : public clAudioStream {
  public:
    static constexpr std::size_t kMostParts = 1000;

    using clAudioStream::clAudioStream;

    std::span<const std::uint8_t> Read() final;
    bool Seek(std::uint64_t frame) final;
    void AddPropertyRows(clIDTagList& rows) const override;

  protected:
    static constexpr int kGap = -3;  // the libraries' number for audio that is missing

    // Of the part that is open.
    struct Sound {
        std::uint64_t rate;
        std::uint64_t channels;
        std::uint64_t frames;
    };

    // What a codec adds. A number below 0 is the library's for what went wrong; those of the two libraries
    // agree.
    virtual const char16_t* CodecName() const = 0;
    virtual int OpenLibrary() = 0;  // on mCursor; what was open before is closed
    virtual Sound OpenSound() const = 0;
    virtual void Describe() = 0;  // what else goes into mFacts
    // Puts the next frames into mBlock. Their number, 0 at the end of the part.
    virtual int Decode() = 0;
    virtual int SeekLibrary(std::uint64_t frame) = 0;
    virtual std::uint64_t BytesTaken() const = 0;  // how far into the part the library has come

    // Where a channel of the codec stands in a frame of mBlock.
    std::size_t PlaceOf(std::size_t channel) const {
        return channel < mPlaces.size() ? mPlaces[channel] : channel;
    }

    clOggCursor mCursor{mFile};
    std::vector<float> mBlock;

  private:
    struct Part {
        clOggPart bytes;
        std::uint64_t firstFrame;
        std::uint64_t frames;
        int trouble;  // the library's number when it can't be decoded
    };

    bool ReadHeaders() final;
    bool TakeFormat();
    void TakeParts(const std::vector<clOggPart>& parts);
    bool RefuseFor(int number);
    XString WhyNot(int number) const;

    int OpenPart(const clOggPart& bytes);
    bool GoToPart(std::size_t index);
    std::uint64_t FramesLeft() const;
    std::span<const std::uint8_t> HandOut(std::size_t frames);
    void GoOnAfter(int result);
    void Watch();
    void ReportEnd();

    clOggWatch mWatch{mFile};
    std::span<const std::uint8_t> mPlaces;
    std::size_t mPartCount = 0;
    std::vector<Part> mParts;     // those that are played
    std::size_t mPart = 0;        // the one that is open
    XString mRest;                // why not all of the file is played
    std::uint64_t mPosition = 0;  // in frames
    bool mIsOver = false;
};
