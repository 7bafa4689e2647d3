// Damage shows in an MP3 file as bytes that belong to no frame: the library finds its way to the next one and
// keeps quiet. So each frame is looked at where it stands, and a gap in front of it is told.
#include "modules/mp3/mp3_stream.h"

#include <mpg123.h>

#include <cstring>

#include "foundation/joined.h"
#include "modules/support/byte_text.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"

namespace {

// Frames decoded in front of a place that is sought: sound of layer III leans on up to 511 bytes of earlier
// frames, which at the lowest bit rates are a good many.
constexpr long kPreFrames = 60;
// Bytes to look through for a frame before the file is given up.
constexpr long kResyncBytes = 1 << 20;

mpg123_ssize_t ReadBytes(void* user, void* to, std::size_t count) {
    std::size_t got = 0;
    return static_cast<clReadCursor*>(user)->Read(to, count, &got) ? static_cast<mpg123_ssize_t>(got) : -1;
}

off_t SeekBytes(void* user, off_t offset, int whence) {
    auto& cursor = *static_cast<clReadCursor*>(user);
    return cursor.Seek(offset, whence) ? static_cast<off_t>(cursor.Position()) : -1;
}

XString Text(const char* bytes) {
    return TextFromBytes(reinterpret_cast<const std::uint8_t*>(bytes), std::strlen(bytes));
}

mpg123_frameinfo FrameOf(mpg123_handle* decoder) {
    mpg123_frameinfo frame{};
    mpg123_info(decoder, &frame);
    return frame;
}

const char16_t* CodecName(int layer) {
    return layer == 1 ? u"MP1" : layer == 2 ? u"MP2" : u"MP3";
}

const char16_t* VersionName(int version) {
    return version == MPG123_1_0 ? u"1" : version == MPG123_2_0 ? u"2" : u"2.5";
}

}  // namespace

clMp3Stream::~clMp3Stream() {
    mpg123_delete(mDecoder);
}

bool clMp3Stream::StartLibrary() {
    mpg123_init();
    mDecoder = mpg123_new(nullptr, nullptr);
    if (!mDecoder) return false;
    constexpr long kFlags = MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_QUIET | MPG123_NO_FRANKENSTEIN;
    return mpg123_param(mDecoder, MPG123_ADD_FLAGS, kFlags, 0) == MPG123_OK &&
           mpg123_param(mDecoder, MPG123_RESYNC_LIMIT, kResyncBytes, 0) == MPG123_OK &&
           mpg123_param(mDecoder, MPG123_PREFRAMES, kPreFrames, 0) == MPG123_OK &&
           mpg123_replace_reader_handle(mDecoder, ReadBytes, SeekBytes, nullptr) == MPG123_OK;
}

bool clMp3Stream::ReadHeaders() {
    if (!StartLibrary()) return Refuse(u"the MPEG decoder can't be started");
    mInfo = ReadInfoFrame(mFile);
    long rate = 0;
    int channels = 0, encoding = 0;
    if (mpg123_open_handle(mDecoder, &mCursor) != MPG123_OK ||
        mpg123_getformat(mDecoder, &rate, &channels, &encoding) != MPG123_OK ||
        encoding != MPG123_ENC_FLOAT_32) {
        return Refuse(Joined({u"holds no MPEG audio: ", Text(mpg123_strerror(mDecoder)).Text()}).Text());
    }
    mFacts.rate = static_cast<std::uint32_t>(rate);
    mFacts.channels = static_cast<std::uint16_t>(channels);
    mFacts.bits = 32;
    mFacts.isFloat = true;
    TakeFormat();
    TakeLength();
    return true;
}

void clMp3Stream::TakeFormat() {
    const mpg123_frameinfo frame = FrameOf(mDecoder);
    mFacts.container = u"MPEG";
    mFacts.codec = CodecName(frame.layer);
    mVersion = Joined({u"MPEG ", VersionName(frame.version), u" layer ", XString(frame.layer).Text()});
    const bool isVariable = mInfo ? mInfo->isVariable : frame.vbr != MPG123_CBR;
    mRateMode = isVariable ? u"variable" : u"constant";
    if (!isVariable) mFacts.bitRate = static_cast<std::uint32_t>(frame.bitrate) * 1000;
    if (mInfo) mFacts.encoder = mInfo->encoder;
}

// Without a description every frame header is looked at.
void clMp3Stream::TakeLength() {
    if (!mInfo || mInfo->frames == 0) mpg123_scan(mDecoder);
    const off_t length = mpg123_length(mDecoder);
    if (length >= 0) mFacts.frames = static_cast<std::uint64_t>(length);
}

bool clMp3Stream::FormatFits() {
    long rate = 0;
    int channels = 0, encoding = 0;
    return mpg123_getformat(mDecoder, &rate, &channels, &encoding) == MPG123_OK &&
           static_cast<std::uint32_t>(rate) == mFacts.rate && channels == mFacts.channels &&
           encoding == MPG123_ENC_FLOAT_32;
}

std::span<const std::uint8_t> clMp3Stream::Read() {
    for (;;) {
        off_t number = 0;
        unsigned char* audio = nullptr;
        std::size_t bytes = 0;
        const int result = mpg123_decode_frame(mDecoder, &number, &audio, &bytes);
        if (result == MPG123_NEW_FORMAT && FormatFits()) continue;
        if (result != MPG123_OK) {
            ReportEnd(result);
            return {};
        }
        LookAtFrame();
        if (bytes > 0) return {audio, bytes / FrameBytes(mFacts) * FrameBytes(mFacts)};
    }
}

void clMp3Stream::LookAtFrame() {
    const off_t position = mpg123_framepos(mDecoder);
    if (position < 0) return;
    const mpg123_frameinfo frame = FrameOf(mDecoder);
    const auto begin = static_cast<std::uint64_t>(position);
    if (mNextFrame != 0 && begin > mNextFrame) {
        Damage(Joined({NumberText(begin - mNextFrame).Text(), u" bytes at ", NumberText(mNextFrame).Text(),
                       u" belong to no frame"})
                   .Text());
    }
    mNextFrame = mLastFrameEnd = begin + static_cast<std::uint64_t>(frame.framesize);
    const bool hasCheckSum = (frame.flags & MPG123_CRC) != 0 && frame.layer == 3;
    if (hasCheckSum && CheckSumIsWrong(begin, frame.version == MPG123_1_0, frame.mode == MPG123_M_MONO))
        Damage(Joined({u"the check sum of the frame at ", NumberText(begin).Text(), u" is wrong"}).Text());
}

// CRC-16 of the polynomial 0x8005 over the second half of the header and the side information (ISO 11172-3,
// 2.4.3.1); the sum itself stands between the two.
bool clMp3Stream::CheckSumIsWrong(std::uint64_t position, bool isMpeg1, bool isMono) {
    const std::uint32_t sideBytes = isMpeg1 ? (isMono ? 17 : 32) : (isMono ? 9 : 17);
    std::uint8_t frame[6 + 32];
    if (!mFile.Fetch(position, frame, 6 + sideBytes)) return false;
    std::uint32_t sum = 0xFFFF;
    for (std::uint32_t i = 2; i < 6 + sideBytes; ++i) {
        if (i == 4) i = 6;
        for (int bit = 7; bit >= 0; --bit) {
            const bool feed = ((sum >> 15 ^ std::uint32_t{frame[i]} >> bit) & 1) != 0;
            sum = (sum << 1 & 0xFFFF) ^ (feed ? 0x8005u : 0u);
        }
    }
    return sum != (std::uint32_t{frame[4]} << 8 | frame[5]);
}

void clMp3Stream::ReportEnd(int result) {
    const std::uint64_t described = mInfo && mInfo->bytes != 0 ? mInfo->position + mInfo->bytes : 0;
    if (mFile.Error() != 0)
        Damage(Joined({u"can't be read (error ", NumberText(mFile.Error()).Text(), u")"}).Text());
    else if (described > mFile.Size())
        Damage(Joined({u"its last ", NumberText(described - mFile.Size()).Text(), u" bytes are missing"})
                   .Text());
    else if (mLastFrameEnd != 0)
        LookBehindLastFrame();
    else if (result != MPG123_DONE)
        Damage(Joined({u"can't be decoded: ", Text(mpg123_strerror(mDecoder)).Text()}).Text());
}

// Tags may stand there, and so may anything else; what begins like a frame is one, cut or of another stream.
void clMp3Stream::LookBehindLastFrame() {
    std::uint8_t first = 0;
    const bool isThere = mLastFrameEnd < mFile.Size() && mFile.Fetch(mLastFrameEnd, &first, 1);
    if (!isThere || first != 0xFF) return;
    Damage(Joined({u"its last ", NumberText(mFile.Size() - mLastFrameEnd).Text(),
                   u" bytes are a frame that was cut or a stream of another format, and left out"})
               .Text());
}

bool clMp3Stream::Seek(std::uint64_t frame) {
    mNextFrame = mLastFrameEnd = 0;
    if (mpg123_seek(mDecoder, static_cast<off_t>(frame), SEEK_SET) >= 0) return true;
    Damage(Joined({u"can't go to frame ", NumberText(frame).Text()}).Text());
    return false;
}

void clMp3Stream::AddPropertyRows(clIDTagList& rows) const {
    rows.Add(u"Version", mVersion.Text());
    rows.Add(u"Bit rate mode", mRateMode);
    if (!mInfo) return;
    rows.Add(u"Encoder delay", NumberText(mInfo->delay).Text());
    rows.Add(u"Encoder padding", NumberText(mInfo->padding).Text());
}
