#include "modules/support/ogg_stream.h"

#include "foundation/joined.h"
#include "modules/support/channel_order.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"

namespace {

// Each part of a chain takes up to about twenty seeks to find. libvorbisfile goes one call deeper for each:
// two thousand parts, for which so many seeks suffice, fit on any stack.
constexpr std::uint32_t kMostSeeks = 10000;
constexpr std::uint64_t kMostRounds = 16;
constexpr std::uint64_t kMostReads = 100000;  // and those rounds
constexpr std::uint32_t kReadBytes = 2048;    // that the libraries ask for at a time

// The numbers that the libraries have in common.
const char16_t* Explanation(int number) {
    switch (number) {
        case -129:
            return u"the decoder has failed within";
        case -130:
            return u"they ask for what the decoder doesn't have";
        case -133:
            return u"they make no sense";
        case -134:
            return u"their version is not known";
        case -136:
            return u"a packet makes no sense";
        case -137:
            return u"a part of the file is damaged";
        case -139:
            return u"the positions in its pages make no sense";
        default:
            return nullptr;
    }
}

XString NumberOrWords(int number) {
    const char16_t* words = Explanation(number);
    return words ? XString(words) : Joined({u"error ", XString(number).Text()});
}

}  // namespace

void clOggCursor::BeginCall() {
    mSeeks = 0;
    mReads = 0;
}

bool clOggCursor::Read(void* to, std::size_t count, std::size_t* got) {
    *got = 0;
    if (++mReads > kMostReads + kMostRounds * (mFile.Size() / kReadBytes)) mIsExhausted = true;
    if (mIsExhausted || !mCursor.Read(to, count, got)) return false;
    return *got > 0 || mCursor.IsAtEnd();
}

bool clOggCursor::Seek(std::int64_t offset, int whence) {
    if (++mSeeks > kMostSeeks) mIsExhausted = true;
    return !mIsExhausted && mCursor.Seek(offset, whence);
}

bool clOggStream::ReadHeaders() {
    const int result = OpenLibrary();
    if (result < 0) return RefuseFor(result);
    mFacts.container = u"Ogg";
    mFacts.codec = CodecName();
    mFacts.bits = 32;
    mFacts.isFloat = true;
    if (!TakeParts()) return Refuse(u"its channels and sample rate make no sense");
    Describe();
    return true;
}

bool clOggStream::TakeParts() {
    constexpr std::uint64_t kMostBytesPerSecond = 0xFFFFFFFF;
    const Part first = PartAt(0);
    if (first.channels == 0 || first.rate == 0 ||
        first.rate > kMostBytesPerSecond / sizeof(float) / first.channels)
        return false;
    mFacts.rate = static_cast<std::uint32_t>(first.rate);
    mFacts.channels = static_cast<std::uint16_t>(first.channels);
    mFacts.channelMask = UsualMask(mFacts.channels);
    mPlaces = VorbisOrder(mFacts.channels);
    std::uint64_t frames = 0;
    for (mParts = 0; mParts < PartCount(); ++mParts) {
        const Part part = PartAt(mParts);
        if (part.rate != first.rate || part.channels != first.channels) break;
        frames += part.frames;
    }
    mFacts.frames = frames;
    return true;
}

bool clOggStream::RefuseFor(int number) {
    if (mFile.Error() != 0 || mCursor.IsExhausted()) return Refuse(WhyNot(number).Text());
    const XString contents = OggContents(mFile);
    if (contents.IsEmpty()) return Refuse(u"is no Ogg file");
    if (contents.Find(CodecName()) == 0)
        return Refuse(Joined({u"holds ", contents.Text(), u" in Ogg and no ", CodecName()}).Text());
    return Refuse(Joined({u"its ", CodecName(), u" headers can't be used: ", WhyNot(number).Text()}).Text());
}

XString clOggStream::WhyNot(int number) const {
    if (mFile.Error() != 0) return Joined({u"can't be read (error ", NumberText(mFile.Error()).Text(), u")"});
    if (mCursor.IsExhausted()) return XString(u"has more parts than can be looked through");
    return NumberOrWords(number);
}

std::span<const std::uint8_t> clOggStream::Read() {
    while (!mIsOver) {
        mCursor.BeginCall();
        const Piece piece = Decode();
        if (piece.frames > 0 && piece.part < mParts) {
            Watch();
            return {reinterpret_cast<const std::uint8_t*>(mBlock.data()),
                    static_cast<std::size_t>(piece.frames) * FrameBytes(mFacts)};
        }
        mIsOver = piece.frames != kGap;
        if (mIsOver)
            ReportEnd(piece);
        else
            Watch();
    }
    return {};
}

void clOggStream::Watch() {
    const XString trouble = mWatch.LookTo(BytesTaken());
    if (!trouble.IsEmpty()) Damage(trouble.Text());
}

void clOggStream::ReportEnd(const Piece& piece) {
    if (piece.frames > 0) {
        return Damage(Joined({u"goes on behind frame ", NumberText(*mFacts.frames).Text(),
                              u" with another sample rate or other channels, which is left out"})
                          .Text());
    }
    if (mFile.Error() == 0) {
        const XString trouble = mWatch.LookToEnd();
        if (!trouble.IsEmpty()) Damage(trouble.Text());
    }
    if (mFile.Error() != 0 || mCursor.IsExhausted()) return Damage(WhyNot(piece.frames).Text());
    if (piece.frames < 0)
        Damage(Joined({u"can't be decoded any further: ", NumberOrWords(piece.frames).Text()}).Text());
}

bool clOggStream::Seek(std::uint64_t frame) {
    mIsOver = frame >= *mFacts.frames;
    if (mIsOver) return true;
    mCursor.BeginCall();
    const int result = SeekLibrary(frame);
    if (result >= 0) {
        mWatch.GoTo(BytesTaken());
        return true;
    }
    mIsOver = true;
    Damage(Joined({u"can't go to frame ", NumberText(frame).Text(), u": ", WhyNot(result).Text()}).Text());
    return false;
}

void clOggStream::AddPropertyRows(clIDTagList& rows) const {
    if (PartCount() > 1) rows.Add(u"Parts", NumberText(static_cast<std::uint64_t>(PartCount())).Text());
}
