#include "modules/flac/flac_stream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "foundation/joined.h"
#include "modules/flac/last_frame.h"
#include "modules/flac/mask_comment.h"
#include "modules/support/byte_text.h"
#include "modules/support/channel_order.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"

struct FlacCallbacks {
    static clFlacStream& Of(void* user) { return *static_cast<clFlacStream*>(user); }

    // True when `call` raised nothing.
    template <class Call>
    static bool Kept(void* user, Call call) {
        try {
            call(Of(user));
            return true;
        } catch (...) {
            Of(user).mRaised = std::current_exception();
            return false;
        }
    }

    static FLAC__StreamDecoderReadStatus Read(const FLAC__StreamDecoder*, FLAC__byte to[], std::size_t* count,
                                              void* user) {
        const bool good = Of(user).mCursor.Read(to, *count, count);
        if (!good) return FLAC__STREAM_DECODER_READ_STATUS_ABORT;
        return *count > 0 ? FLAC__STREAM_DECODER_READ_STATUS_CONTINUE
                          : FLAC__STREAM_DECODER_READ_STATUS_END_OF_STREAM;
    }

    static FLAC__StreamDecoderSeekStatus Seek(const FLAC__StreamDecoder*, FLAC__uint64 position, void* user) {
        const bool good = position <= std::numeric_limits<std::int64_t>::max() &&
                          Of(user).mCursor.Seek(static_cast<std::int64_t>(position), SEEK_SET);
        return good ? FLAC__STREAM_DECODER_SEEK_STATUS_OK : FLAC__STREAM_DECODER_SEEK_STATUS_ERROR;
    }

    static FLAC__StreamDecoderTellStatus Tell(const FLAC__StreamDecoder*, FLAC__uint64* position,
                                              void* user) {
        *position = Of(user).mCursor.Position();
        return FLAC__STREAM_DECODER_TELL_STATUS_OK;
    }

    static FLAC__StreamDecoderLengthStatus Length(const FLAC__StreamDecoder*, FLAC__uint64* length,
                                                  void* user) {
        *length = Of(user).mCursor.Size();
        return FLAC__STREAM_DECODER_LENGTH_STATUS_OK;
    }

    static FLAC__bool IsAtEnd(const FLAC__StreamDecoder*, void* user) { return Of(user).mCursor.IsAtEnd(); }

    static FLAC__StreamDecoderWriteStatus Write(const FLAC__StreamDecoder*, const FLAC__Frame* frame,
                                                const FLAC__int32* const rows[], void* user) {
        const bool good = Kept(user, [&](clFlacStream& self) { self.TakeFrame(frame->header, rows); });
        return good ? FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE : FLAC__STREAM_DECODER_WRITE_STATUS_ABORT;
    }

    static void Metadata(const FLAC__StreamDecoder*, const FLAC__StreamMetadata* block, void* user) {
        Kept(user, [&](clFlacStream& self) { self.TakeMetadata(*block); });
    }

    static void Error(const FLAC__StreamDecoder*, FLAC__StreamDecoderErrorStatus status, void* user) {
        Of(user).TakeTrouble(status);
    }
};

namespace {

constexpr std::uint32_t kMostSilenceSeconds = 5;
constexpr std::uint64_t kOpen = std::numeric_limits<std::uint64_t>::max();  // as the end

XString HexText(std::span<const FLAC__byte> bytes) {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    XString text;
    for (const FLAC__byte byte : bytes) {
        const char16_t digits[] = {kDigits[byte >> 4], kDigits[byte & 15], 0};
        text += digits;
    }
    return text;
}

}  // namespace

bool clFlacStream::ReadHeaders() {
    mDecoder.reset(FLAC__stream_decoder_new());
    const bool good = mDecoder && Restart();
    if (!mHasStreamInfo) return Refuse(u"it is no FLAC file");
    if (!good) return Refuse(u"it ends before its audio");
    if (mStreamInfo.sample_rate == 0) return Refuse(u"its sample rate is 0");
    TakeFacts();
    ReportTrouble(0);
    FindLength();
    return true;
}

// Lets the library begin again with the headers.
bool clFlacStream::Restart() {
    FLAC__StreamDecoder* decoder = mDecoder.get();
    FLAC__stream_decoder_finish(decoder);
    mCursor.Seek(0, SEEK_SET);
    mNext = mAudioBytes = 0;
    mIsPending = mGoesOn = false;
    using C = FlacCallbacks;
    const bool started =
        FLAC__stream_decoder_set_md5_checking(decoder, true) &&
        FLAC__stream_decoder_set_metadata_respond(decoder, FLAC__METADATA_TYPE_VORBIS_COMMENT) &&
        FLAC__stream_decoder_init_stream(decoder, C::Read, C::Seek, C::Tell, C::Length, C::IsAtEnd, C::Write,
                                         C::Metadata, C::Error, this) == FLAC__STREAM_DECODER_INIT_STATUS_OK;
    if (started) FLAC__stream_decoder_process_until_end_of_metadata(decoder);
    Raise();
    mIsWhole = mGoesOn = started && HeadersAreRead();
    return mGoesOn;
}

// Also behind metadata that are damaged, from which the library finds its way to the audio.
bool clFlacStream::HeadersAreRead() const {
    const FLAC__StreamDecoderState state = FLAC__stream_decoder_get_state(mDecoder.get());
    return state == FLAC__STREAM_DECODER_SEARCH_FOR_FRAME_SYNC || state == FLAC__STREAM_DECODER_READ_FRAME;
}

void clFlacStream::TakeMetadata(const FLAC__StreamMetadata& block) {
    if (block.type == FLAC__METADATA_TYPE_STREAMINFO) {
        mStreamInfo = block.data.stream_info;
        mHasStreamInfo = true;
        return;
    }
    const FLAC__StreamMetadata_VorbisComment& comments = block.data.vorbis_comment;
    mFacts.encoder = TextFromBytes(comments.vendor_string.entry, comments.vendor_string.length);
    for (std::uint32_t i = 0; i < comments.num_comments; ++i) {
        const auto* entry = reinterpret_cast<const char*>(comments.comments[i].entry);
        if (!entry) continue;
        const auto mask = ReadMaskComment({entry, comments.comments[i].length}, mStreamInfo.channels);
        if (mask) mMaskComment = mask;
    }
}

void clFlacStream::TakeFacts() {
    const std::uint32_t bytes = (mStreamInfo.bits_per_sample + 7) / 8;
    mFacts.rate = mStreamInfo.sample_rate;
    mFacts.channels = static_cast<std::uint16_t>(mStreamInfo.channels);
    mFacts.bits = static_cast<std::uint16_t>(bytes * 8);
    mFacts.validBits = static_cast<std::uint16_t>(mStreamInfo.bits_per_sample);
    mFacts.channelMask = mMaskComment.value_or(UsualMask(mStreamInfo.channels));
    mFacts.container = mFacts.codec = u"FLAC";
    mShape = {mStreamInfo.channels, bytes, mFacts.bits - mStreamInfo.bits_per_sample};
}

// A header that leaves it open is no trouble: the last frame knows, and the first one where counting begins.
void clFlacStream::FindLength() {
    mEnd = mStreamInfo.total_samples;
    if (mEnd != 0) {
        mBegin = 0;
    } else {
        const bool isFixed = mStreamInfo.min_blocksize == mStreamInfo.max_blocksize;
        const auto end = FindEndOfLastFrame(mFile, isFixed ? mStreamInfo.min_blocksize : 0);
        mEnd = kOpen;
        Advance();
        mIsPending = mAudioBytes > 0;
        if (!mIsPending && mFile.Error() == 0) mEnd = 0;
        if (mBegin && end && *end > *mBegin) mEnd = *end - *mBegin;
    }
    if (mEnd != kOpen) mFacts.frames = mEnd;
}

std::span<const std::uint8_t> clFlacStream::Read() {
    if (!mIsPending) Advance();
    mIsPending = false;
    if (mAudioBytes == 0) CompareCheckSum();
    return {mBuffer.data(), mAudioBytes};
}

// On to the next audio; without any the end is reached.
void clFlacStream::Advance() {
    mAudioBytes = 0;
    while (mAudioBytes == 0 && mGoesOn && mNext < mEnd) Step();
}

void clFlacStream::Step() {
    FLAC__StreamDecoder* decoder = mDecoder.get();
    const std::uint64_t begin = mNext;
    FLAC__uint64 place = 0;
    mWrites = 0;
    FLAC__stream_decoder_get_decode_position(decoder, &place);
    bool good = FLAC__stream_decoder_process_single(decoder);
    if (mWrites > 1 && !mRaised) good = DecodeAgain(place, begin);
    Raise();
    ReportTrouble(begin);
    const bool atEnd = FLAC__stream_decoder_get_state(decoder) == FLAC__STREAM_DECODER_END_OF_STREAM;
    mGoesOn = good && !atEnd;
    if (good) return;
    if (mFile.Error() != 0)
        Damage(Joined({u"can't be read (error ", NumberText(mFile.Error()).Text(), u")"}).Text());
    else if (atEnd)
        Damage(u"ends within a frame");
    else
        Damage(Joined({u"can't be decoded from frame ", NumberText(mNext).Text(), u" on"}).Text());
}

// The library fills gaps on its own, and then spoils the frame behind (1.4.2). Once it has forgotten the frame
// before, it leaves a gap alone.
bool clFlacStream::DecodeAgain(std::uint64_t place, std::uint64_t begin) {
    mAudioBytes = 0;
    mNext = begin;
    mLostFrames = true;
    mIsWhole = false;
    return mCursor.Seek(static_cast<std::int64_t>(place), SEEK_SET) &&
           FLAC__stream_decoder_flush(mDecoder.get()) && FLAC__stream_decoder_process_single(mDecoder.get());
}

void clFlacStream::Raise() {
    if (mRaised) std::rethrow_exception(std::exchange(mRaised, nullptr));
}

// In front of the headers everything that is not theirs counts as lost to the library.
void clFlacStream::TakeTrouble(FLAC__StreamDecoderErrorStatus status) {
    if (status == FLAC__STREAM_DECODER_ERROR_STATUS_BAD_METADATA)
        mLostMetadata = true;
    else if (mGoesOn)
        mLostFrames = true;
}

void clFlacStream::ReportTrouble(std::uint64_t frame) {
    if (mLostMetadata) Damage(u"its metadata are damaged");
    if (mLostFrames) Damage(Joined({u"is damaged at frame ", NumberText(frame).Text()}).Text());
    if (mChangedFormat) Damage(u"changes its format on the way, that part is left out");
}

void clFlacStream::TakeFrame(const FLAC__FrameHeader& header, const FLAC__int32* const rows[]) {
    ++mWrites;
    if (header.channels != mFacts.channels || header.sample_rate != mFacts.rate ||
        header.bits_per_sample != mFacts.validBits) {
        mChangedFormat = true;
        return;
    }
    if (!mBegin) mBegin = header.number.sample_number;
    const std::uint64_t number = header.number.sample_number - *mBegin;
    if (header.number.sample_number < *mBegin || number < mNext || number >= mEnd) {
        mLostFrames = true;
        return;
    }
    AppendSilence(number);
    const std::uint64_t from = std::max(number, mWanted);
    const std::uint64_t end = std::min(number + header.blocksize, mEnd);
    if (from < end) {
        Interleave(rows, static_cast<std::uint32_t>(from - number), static_cast<std::uint32_t>(end - from),
                   mShape, Extend(end - from));
    }
    mNext = end;
}

void clFlacStream::AppendSilence(std::uint64_t end) {
    const std::uint64_t from = std::max(mNext, mWanted);
    if (end > mNext) mLostFrames = true;
    if (end <= from || end - mNext > std::uint64_t{mFacts.rate} * kMostSilenceSeconds) return;
    const std::size_t bytes = (end - from) * FrameBytes(mFacts);
    std::memset(Extend(end - from), mShape.bytes == 1 ? 0x80 : 0, bytes);
}

// Room for more frames behind the audio.
std::uint8_t* clFlacStream::Extend(std::uint64_t frames) {
    const std::size_t begin = mAudioBytes;
    mAudioBytes += frames * FrameBytes(mFacts);
    if (mAudioBytes > mBuffer.size()) mBuffer.resize(mAudioBytes);
    return mBuffer.data() + begin;
}

void clFlacStream::CompareCheckSum() {
    if (!mIsWhole || (mEnd != kOpen && mNext < mEnd)) return;
    mIsWhole = mGoesOn = false;
    if (!FLAC__stream_decoder_finish(mDecoder.get())) Damage(u"its audio does not match its check sum");
}

bool clFlacStream::Seek(std::uint64_t frame) {
    mWanted = frame;
    mAudioBytes = 0;
    mIsPending = false;
    if (frame >= mEnd) {
        mNext = mEnd;
        mIsWhole = false;
        return true;
    }
    return (frame > 0 && SeekInLibrary(frame)) || SeekByDecoding(frame);
}

bool clFlacStream::SeekInLibrary(std::uint64_t frame) {
    FLAC__StreamDecoder* decoder = mDecoder.get();
    if (FLAC__stream_decoder_get_state(decoder) == FLAC__STREAM_DECODER_UNINITIALIZED && !Restart())
        return false;
    mNext = frame;
    mIsWhole = false;
    mGoesOn = true;
    const bool found = FLAC__stream_decoder_seek_absolute(decoder, frame + mBegin.value_or(0));
    Raise();
    mIsPending = found && mAudioBytes > 0;
    return mIsPending;
}

// What the library can't find in a damaged file is found by decoding all that stands in front of it.
bool clFlacStream::SeekByDecoding(std::uint64_t frame) {
    if (!Restart()) {
        Damage(Joined({u"can't go to frame ", NumberText(frame).Text()}).Text());
        return false;
    }
    Advance();
    mIsPending = mAudioBytes > 0;
    return true;
}

void clFlacStream::AddPropertyRows(clIDTagList& rows) const {
    const XString least = NumberText(mStreamInfo.min_blocksize), most = NumberText(mStreamInfo.max_blocksize);
    rows.Add(u"Block size",
             least == most ? most.Text() : Joined({least.Text(), u" to ", most.Text()}).Text());
    const std::uint64_t bytes = mFacts.frames.value_or(0) * mFacts.channels * mFacts.validBits / 8;
    if (bytes > 0) rows.Add(u"Compression", UnitText(FileSize() * 100 / bytes, u"%").Text());
    const std::span<const FLAC__byte> sum(mStreamInfo.md5sum);
    if (std::ranges::any_of(sum, [](FLAC__byte byte) { return byte != 0; }))
        rows.Add(u"MD5", HexText(sum).Text());
}
