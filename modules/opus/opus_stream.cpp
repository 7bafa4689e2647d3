#include "modules/opus/opus_stream.h"

#include <opus/opusfile.h>

#include <algorithm>
#include <cstring>

#include "foundation/joined.h"
#include "modules/support/byte_text.h"
#include "modules/support/property_text.h"

namespace {

constexpr std::size_t kMostFrames = 5760;  // of a packet: 120 ms
constexpr std::size_t kMostChannels = 8;

clOggCursor& Cursor(void* user) {
    return *static_cast<clOggCursor*>(user);
}

int ReadBytes(void* user, unsigned char* to, int count) {
    std::size_t got = 0;
    return Cursor(user).Read(to, static_cast<std::size_t>(count), &got) ? static_cast<int>(got) : -1;
}

int SeekBytes(void* user, opus_int64 offset, int whence) {
    return Cursor(user).Seek(offset, whence) ? 0 : -1;
}

opus_int64 TellBytes(void* user) {
    return static_cast<opus_int64>(Cursor(user).Position());
}

std::uint64_t NotNegative(std::int64_t number) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(number, 0));
}

XString Text(const char* bytes) {
    return bytes ? TextFromBytes(reinterpret_cast<const std::uint8_t*>(bytes), std::strlen(bytes))
                 : XString();
}

}  // namespace

clOpusStream::~clOpusStream() {
    op_free(mDecoder);
}

int clOpusStream::OpenLibrary() {
    static_assert(OP_HOLE == kGap && OP_EBADLINK == -137);  // as clOggStream has them
    constexpr OpusFileCallbacks kCallbacks = {ReadBytes, SeekBytes, TellBytes, nullptr};
    int trouble = 0;
    op_free(mDecoder);
    mDecoder = op_open_callbacks(&mCursor, &kCallbacks, nullptr, 0, &trouble);
    mPacket.resize(kMostFrames * kMostChannels);
    mFirstFrame = 0;
    return mDecoder ? 0 : trouble;
}

clOggStream::Sound clOpusStream::OpenSound() const {
    return {kRate, NotNegative(op_channel_count(mDecoder, 0)), NotNegative(op_pcm_total(mDecoder, 0))};
}

void clOpusStream::Describe() {
    const OpusTags* tags = op_tags(mDecoder, 0);
    const char* encoder = opus_tags_query(tags, "ENCODER", 0);
    mFacts.encoder = Text(encoder ? encoder : tags->vendor);
}

// Holds back what stands in front of the place that was sought. Behind a packet that makes no sense the next
// one may be good again.
int clOpusStream::Decode() {
    for (;;) {
        int part = 0;
        const int frames = op_read_float(mDecoder, mPacket.data(), static_cast<int>(mPacket.size()), &part);
        if (frames <= 0 || part != 0) return frames == OP_EBADPACKET ? kGap : std::min(frames, 0);
        const std::uint64_t end = NotNegative(op_pcm_tell(mDecoder));
        if (end <= mFirstFrame) continue;
        const std::uint64_t kept = std::min(static_cast<std::uint64_t>(frames), end - mFirstFrame);
        Take(static_cast<std::size_t>(frames) - kept, kept);
        return static_cast<int>(kept);
    }
}

void clOpusStream::Take(std::size_t first, std::size_t frames) {
    const std::size_t channels = mFacts.channels;
    mBlock.resize(frames * channels);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const std::size_t place = PlaceOf(channel);
        for (std::size_t i = 0; i < frames; ++i)
            mBlock[i * channels + place] = mPacket[(first + i) * channels + channel];
    }
}

int clOpusStream::SeekLibrary(std::uint64_t frame) {
    mFirstFrame = frame;
    return op_pcm_seek(mDecoder, static_cast<ogg_int64_t>(frame - std::min(frame, kPreRoll)));
}

std::uint64_t clOpusStream::BytesTaken() const {
    return mDecoder ? NotNegative(op_raw_tell(mDecoder)) : 0;
}

void clOpusStream::AddPropertyRows(clIDTagList& rows) const {
    const OpusHead* head = op_head(mDecoder, 0);
    rows.Add(u"Input sample rate", UnitText(head->input_sample_rate, u"Hz").Text());
    rows.Add(u"Pre-skip", UnitText(head->pre_skip, u"frames").Text());
    if (head->output_gain != 0)  // in 256ths of a decibel
        rows.Add(u"Output gain",
                 Joined({XString::FromDouble(head->output_gain / 256.0, 2).Text(), u" dB"}).Text());
    clOggStream::AddPropertyRows(rows);
}
