// clOggStream: sound in an Ogg file, whichever library decodes it.
//
// Vorbis and Opus are read by libraries of one family, whose calls and error numbers are alike. A codec brings
// its calls; decided here is what holds for both:
//
// - Samples are 32-bit float and not clipped. A block is what the library gives at once, mostly one packet.
// - A file may be a chain of parts. It is as long as its parts up to the first one whose sample rate or number
//   of channels differs: there it ends, in words.
// - Damage is looked for beside the decoding (see ogg_watch.h). A file that lacks its end is damaged too.
#pragma once

#include <vector>

#include "modules/support/audio_stream.h"
#include "modules/support/ogg_watch.h"
#include "modules/support/read_cursor.h"

// A cursor that a library can't keep busy for ever: more seeks than a chain of a few hundred parts takes, or
// more reads than going through the file many times over, and it fails.
class clOggCursor {
  public:
    explicit clOggCursor(clFileReader& file) : mFile(file), mCursor(file) {}

    void BeginCall();  // of the library: counts anew
    bool IsExhausted() const { return mIsExhausted; }

    // As clReadCursor's; a read also fails when the file has become shorter than it was.
    bool Read(void* to, std::size_t count, std::size_t* got);
    bool Seek(std::int64_t offset, int whence);
    std::uint64_t Position() const { return mCursor.Position(); }

  private:
    clFileReader& mFile;
    clReadCursor mCursor;
    std::uint32_t mSeeks = 0;
    std::uint64_t mReads = 0;
    bool mIsExhausted = false;
};

class clOggStream : public clAudioStream {
  public:
    using clAudioStream::clAudioStream;

    std::span<const std::uint8_t> Read() final;
    bool Seek(std::uint64_t frame) final;
    void AddPropertyRows(clIDTagList& rows) const override;

  protected:
    static constexpr int kGap = -3;  // the libraries' number for audio that is missing

    struct Part {
        std::uint64_t rate;
        std::uint64_t channels;
        std::uint64_t frames;
    };
    struct Piece {
        int frames;  // 0 at the end; negative is the library's number for what went wrong
        int part;
    };

    // What a codec adds. A number below 0 is the library's for what went wrong.
    virtual const char16_t* CodecName() const = 0;
    virtual int OpenLibrary() = 0;
    virtual int PartCount() const = 0;
    virtual Part PartAt(int index) const = 0;
    virtual void Describe() {}  // what else goes into mFacts
    // Puts the next frames into mBlock, unless they are of a part with other channels.
    virtual Piece Decode() = 0;
    virtual int SeekLibrary(std::uint64_t frame) = 0;
    virtual std::uint64_t BytesTaken() const = 0;  // how far into the file the library has come

    // Where a channel of the codec stands in mBlock.
    std::size_t PlaceOf(std::size_t channel) const {
        return channel < mPlaces.size() ? mPlaces[channel] : channel;
    }

    clOggCursor mCursor{mFile};
    std::vector<float> mBlock;

  private:
    bool ReadHeaders() final;
    bool RefuseFor(int number);
    XString WhyNot(int number) const;
    bool TakeParts();
    void Watch();
    void ReportEnd(const Piece& piece);

    clOggWatch mWatch{mFile};
    std::span<const std::uint8_t> mPlaces;
    int mParts = 0;  // those that are played
    bool mIsOver = false;
};
