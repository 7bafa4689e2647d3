#include "modules/support/ogg_stream.h"

#include <algorithm>

#include "foundation/joined.h"
#include "modules/support/channel_order.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"

namespace {

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

bool clOggStream::ReadHeaders() {
    const std::vector<clOggPart> parts = FindOggParts(mFile, kMostParts);
    const int trouble = OpenPart(parts[0]);
    if (trouble < 0) return RefuseFor(trouble);
    if (!TakeFormat()) return Refuse(u"its channels and sample rate make no sense");
    Describe();
    TakeParts(parts);
    const int again = parts.size() > 1 ? OpenPart(parts[0]) : 0;
    return again >= 0 || RefuseFor(again);
}

int clOggStream::OpenPart(const clOggPart& bytes) {
    mCursor.ShowOnly(bytes);
    return OpenLibrary();
}

bool clOggStream::TakeFormat() {
    constexpr std::uint64_t kMostBytesPerSecond = 0xFFFFFFFF;
    const Sound sound = OpenSound();
    if (sound.channels == 0 || sound.rate == 0 ||
        sound.rate > kMostBytesPerSecond / sizeof(float) / sound.channels)
        return false;
    mFacts.container = u"Ogg";
    mFacts.codec = CodecName();
    mFacts.rate = static_cast<std::uint32_t>(sound.rate);
    mFacts.channels = static_cast<std::uint16_t>(sound.channels);
    mFacts.bits = 32;
    mFacts.isFloat = true;
    mFacts.channelMask = UsualMask(mFacts.channels);
    mPlaces = VorbisOrder(mFacts.channels);
    return true;
}

// Each part is opened to see how long it is; the first one is open already.
void clOggStream::TakeParts(const std::vector<clOggPart>& parts) {
    std::uint64_t frames = 0;
    for (const clOggPart& bytes : parts) {
        const int trouble = mParts.empty() ? 0 : OpenPart(bytes);
        const Sound sound = trouble < 0 ? Sound{mFacts.rate, mFacts.channels, 0} : OpenSound();
        if (sound.rate != mFacts.rate || sound.channels != mFacts.channels) {
            mRest = Joined({u"goes on behind frame ", NumberText(frames).Text(),
                            u" with another sample rate or other channels, which is left out"});
            break;
        }
        mParts.push_back({bytes, frames, sound.frames, trouble});
        frames += sound.frames;
    }
    if (mRest.IsEmpty() && parts.back().end < mFile.Size())
        mRest = Joined({u"has more than ", NumberText(kMostParts).Text(), u" parts, which are left out"});
    mFacts.frames = frames;
    mPartCount = parts.size();
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
    if (mCursor.IsExhausted())
        return XString(u"is so put together that the decoder does not find through it");
    return NumberOrWords(number);
}

std::span<const std::uint8_t> clOggStream::Read() {
    while (!mIsOver) {
        mCursor.BeginCall();
        const int result = FramesLeft() > 0 ? Decode() : 0;
        if (result > 0) return HandOut(static_cast<std::size_t>(result));
        GoOnAfter(result);
    }
    return {};
}

// Of the part that is open. A packet that reaches beyond is not sound to its end.
std::uint64_t clOggStream::FramesLeft() const {
    const Part& part = mParts[mPart];
    if (part.trouble < 0) return 0;
    return part.frames - std::min(part.frames, mPosition - part.firstFrame);
}

std::span<const std::uint8_t> clOggStream::HandOut(std::size_t frames) {
    frames = static_cast<std::size_t>(std::min<std::uint64_t>(frames, FramesLeft()));
    Watch();
    mPosition += frames;
    return {reinterpret_cast<const std::uint8_t*>(mBlock.data()), frames * FrameBytes(mFacts)};
}

void clOggStream::GoOnAfter(int result) {
    Watch();
    if (result == kGap) return Damage(u"a stretch of its audio can't be decoded");  // and its pages are good
    if (mFile.Error() != 0 || mCursor.IsExhausted()) {
        mIsOver = true;
        return Damage(WhyNot(result).Text());
    }
    if (result < 0) Damage(Joined({u"can't be decoded any further: ", NumberOrWords(result).Text()}).Text());
    if (mPart + 1 == mParts.size()) return ReportEnd();
    mPosition = mParts[mPart + 1].firstFrame;
    GoToPart(mPart + 1);
}

// One that can't be decoded is told and has no frames.
bool clOggStream::GoToPart(std::size_t index) {
    mPart = index;
    Part& part = mParts[index];
    if (part.trouble >= 0) part.trouble = OpenPart(part.bytes);
    if (part.trouble >= 0) return true;
    Damage(Joined({u"its part at byte ", NumberText(part.bytes.begin).Text(), u" can't be decoded: ",
                   WhyNot(part.trouble).Text()})
               .Text());
    return false;
}

void clOggStream::Watch() {
    const XString trouble = mWatch.LookTo(mParts[mPart].bytes.begin + BytesTaken());
    if (!trouble.IsEmpty()) Damage(trouble.Text());
}

void clOggStream::ReportEnd() {
    mIsOver = true;
    const XString trouble = mRest.IsEmpty() ? mWatch.LookToEnd() : mRest;
    if (!trouble.IsEmpty()) Damage(trouble.Text());
}

bool clOggStream::Seek(std::uint64_t frame) {
    mIsOver = frame >= *mFacts.frames;
    mPosition = frame;
    if (mIsOver) return true;
    std::size_t index = mParts.size() - 1;
    while (mParts[index].firstFrame > frame) --index;
    mIsOver = index != mPart && !GoToPart(index);
    if (mIsOver) return false;
    mCursor.BeginCall();
    const int result = SeekLibrary(frame - mParts[index].firstFrame);
    mWatch.GoTo(mParts[index].bytes.begin + BytesTaken());
    if (result >= 0) return true;
    mIsOver = true;
    Damage(Joined({u"can't go to frame ", NumberText(frame).Text(), u": ", WhyNot(result).Text()}).Text());
    return false;
}

void clOggStream::AddPropertyRows(clIDTagList& rows) const {
    if (mPartCount > 1) rows.Add(u"Parts", NumberText(mPartCount).Text());
}
