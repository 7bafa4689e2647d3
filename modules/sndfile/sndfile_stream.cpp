#include "modules/sndfile/sndfile_stream.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "foundation/joined.h"
#include "modules/sndfile/claimed_audio.h"
#include "modules/support/byte_text.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"

namespace {

constexpr int kMostChannels = 256;

clReadCursor& Cursor(void* user) {
    return *static_cast<clReadCursor*>(user);
}

SF_VIRTUAL_IO MakeCallbacks() {
    SF_VIRTUAL_IO io{};
    io.get_filelen = [](void* user) { return static_cast<sf_count_t>(Cursor(user).Size()); };
    io.seek = [](sf_count_t offset, int whence, void* user) {
        Cursor(user).Seek(offset, whence);
        return static_cast<sf_count_t>(Cursor(user).Position());
    };
    io.read = [](void* to, sf_count_t count, void* user) {
        std::size_t got = 0;
        if (count > 0) Cursor(user).Read(to, static_cast<std::size_t>(count), &got);
        return static_cast<sf_count_t>(got);
    };
    io.write = [](const void*, sf_count_t, void*) { return sf_count_t{0}; };
    io.tell = [](void* user) { return static_cast<sf_count_t>(Cursor(user).Position()); };
    return io;
}

XString Text(const char* bytes) {
    return bytes ? TextFromBytes(reinterpret_cast<const std::uint8_t*>(bytes), std::strlen(bytes))
                 : XString();
}

struct Name {
    int format;
    const char16_t* name;
};

constexpr Name kContainers[] = {
    {SF_FORMAT_AIFF, u"AIFF"},        {SF_FORMAT_AU, u"AU"},    {SF_FORMAT_CAF, u"CAF"},
    {SF_FORMAT_W64, u"Wave64"},       {SF_FORMAT_VOC, u"VOC"},  {SF_FORMAT_NIST, u"NIST"},
    {SF_FORMAT_SVX, u"8SVX"},         {SF_FORMAT_PAF, u"PAF"},  {SF_FORMAT_PVF, u"PVF"},
    {SF_FORMAT_AVR, u"AVR"},          {SF_FORMAT_HTK, u"HTK"},  {SF_FORMAT_SDS, u"SDS"},
    {SF_FORMAT_IRCAM, u"IRCAM"},      {SF_FORMAT_WAV, u"WAVE"}, {SF_FORMAT_WAVEX, u"WAVE"},
    {SF_FORMAT_RF64, u"WAVE (RF64)"},
};

constexpr Name kCodecs[] = {
    {SF_FORMAT_PCM_S8, u"PCM"},          {SF_FORMAT_PCM_U8, u"PCM"},        {SF_FORMAT_PCM_16, u"PCM"},
    {SF_FORMAT_PCM_24, u"PCM"},          {SF_FORMAT_PCM_32, u"PCM"},        {SF_FORMAT_FLOAT, u"PCM float"},
    {SF_FORMAT_DOUBLE, u"PCM float"},    {SF_FORMAT_ULAW, u"mu-law"},       {SF_FORMAT_ALAW, u"A-law"},
    {SF_FORMAT_IMA_ADPCM, u"IMA ADPCM"}, {SF_FORMAT_MS_ADPCM, u"MS ADPCM"}, {SF_FORMAT_GSM610, u"GSM 6.10"},
    {SF_FORMAT_ALAC_16, u"ALAC"},        {SF_FORMAT_ALAC_20, u"ALAC"},      {SF_FORMAT_ALAC_24, u"ALAC"},
    {SF_FORMAT_ALAC_32, u"ALAC"},        {SF_FORMAT_DWVW_12, u"DWVW"},      {SF_FORMAT_DWVW_16, u"DWVW"},
    {SF_FORMAT_DWVW_24, u"DWVW"},        {SF_FORMAT_DPCM_8, u"DPCM"},       {SF_FORMAT_DPCM_16, u"DPCM"},
    {SF_FORMAT_G721_32, u"G.721"},       {SF_FORMAT_G723_24, u"G.723"},     {SF_FORMAT_G723_40, u"G.723"},
};

template <std::size_t count>
const char16_t* NameOf(const Name (&names)[count], int format, const char16_t* other) {
    for (const Name& each : names)
        if (each.format == format) return each.name;
    return other;
}

// The bit of a channel mask for a place of libsndfile's; 0 for one that masks don't have.
std::uint32_t MaskBit(int place) {
    switch (place) {
        case SF_CHANNEL_MAP_LEFT:
        case SF_CHANNEL_MAP_FRONT_LEFT:
            return 0x1;
        case SF_CHANNEL_MAP_RIGHT:
        case SF_CHANNEL_MAP_FRONT_RIGHT:
            return 0x2;
        case SF_CHANNEL_MAP_MONO:
        case SF_CHANNEL_MAP_CENTER:
        case SF_CHANNEL_MAP_FRONT_CENTER:
            return 0x4;
        case SF_CHANNEL_MAP_LFE:
            return 0x8;
        case SF_CHANNEL_MAP_REAR_LEFT:
            return 0x10;
        case SF_CHANNEL_MAP_REAR_RIGHT:
            return 0x20;
        case SF_CHANNEL_MAP_REAR_CENTER:
            return 0x100;
        case SF_CHANNEL_MAP_SIDE_LEFT:
            return 0x200;
        case SF_CHANNEL_MAP_SIDE_RIGHT:
            return 0x400;
        default:
            return 0;
    }
}

}  // namespace

clSndfileStream::~clSndfileStream() {
    if (mSound) sf_close(mSound);
}

bool clSndfileStream::ReadHeaders() {
    SF_INFO info{};
    SF_VIRTUAL_IO io = MakeCallbacks();
    mSound = sf_open_virtual(&io, SFM_READ, &info, &mCursor);
    if (!mSound) return Refuse(Joined({u"can't be read: ", Text(sf_strerror(nullptr)).Text()}).Text());
    if (info.channels < 1 || info.channels > kMostChannels || info.samplerate < 1 || info.frames < 0)
        return Refuse(u"its channels, sample rate or length make no sense");
    mFacts.rate = static_cast<std::uint32_t>(info.samplerate);
    mFacts.channels = static_cast<std::uint16_t>(info.channels);
    TakeFormat(info.format);
    TakeChannelMap();
    mFacts.encoder = Text(sf_get_string(mSound, SF_STR_SOFTWARE));
    TakeLength(info.frames);
    mBlock.resize(std::size_t{kBlockFrames} * FrameBytes(mFacts));
    return true;
}

void clSndfileStream::TakeFormat(int format) {
    const int codec = format & SF_FORMAT_SUBMASK;
    const auto take = [this](Width width, std::uint16_t bits, std::uint16_t validBits = 0) {
        mWidth = width;
        mFacts.bits = bits;
        mFacts.validBits = validBits;
    };
    mFacts.container = NameOf(kContainers, format & SF_FORMAT_TYPEMASK, u"other");
    mFacts.codec = NameOf(kCodecs, codec, u"other");
    mFacts.isFloat = codec == SF_FORMAT_FLOAT || codec == SF_FORMAT_DOUBLE;
    switch (codec) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return take(Width::unsigned8, 8);
        case SF_FORMAT_ALAC_20:
            return take(Width::packed24, 24, 20);
        case SF_FORMAT_PCM_24:
        case SF_FORMAT_ALAC_24:
        case SF_FORMAT_DWVW_24:
            return take(Width::packed24, 24);
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_ALAC_32:
            return take(Width::int32, 32);
        case SF_FORMAT_FLOAT:
            return take(Width::float32, 32);
        case SF_FORMAT_DOUBLE:
            return take(Width::float64, 64);
        default:
            return take(Width::short16, 16);
    }
}

// The library counts a byte that only pads an odd length as a frame of its own; the file knows better.
void clSndfileStream::TakeLength(std::int64_t counted) {
    const clClaimedAudio claimed = ReadClaimedAudio(mFile).value_or(clClaimedAudio{});
    if (counted < std::numeric_limits<std::int64_t>::max())
        mFacts.frames = static_cast<std::uint64_t>(counted);
    if (claimed.frames && mFacts.frames) mFacts.frames = std::min(*claimed.frames, *mFacts.frames);
    if (claimed.end > mFile.Size()) mMissingBytes = claimed.end - mFile.Size();
}

// Only a map in the order of WAVE files can be told as a mask.
void clSndfileStream::TakeChannelMap() {
    std::array<int, kMostChannels> map{};
    const int bytes = mFacts.channels * static_cast<int>(sizeof(int));
    if (!sf_command(mSound, SFC_GET_CHANNEL_MAP_INFO, map.data(), bytes)) return;
    std::uint32_t mask = 0;
    for (std::size_t i = 0; i < mFacts.channels; ++i) {
        const std::uint32_t bit = MaskBit(map[i]);
        if (bit <= mask) return;
        mask |= bit;
    }
    mFacts.channelMask = mask;
}

std::uint64_t clSndfileStream::ReadFrames() {
    return static_cast<std::uint64_t>(std::max<sf_count_t>(TakeFrames(), 0));
}

std::int64_t clSndfileStream::TakeFrames() {
    switch (mWidth) {
        case Width::short16:
            return sf_readf_short(mSound, reinterpret_cast<short*>(mBlock.data()), kBlockFrames);
        case Width::int32:
            return sf_readf_int(mSound, reinterpret_cast<int*>(mBlock.data()), kBlockFrames);
        case Width::float32:
            return sf_readf_float(mSound, reinterpret_cast<float*>(mBlock.data()), kBlockFrames);
        case Width::float64:
            return sf_readf_double(mSound, reinterpret_cast<double*>(mBlock.data()), kBlockFrames);
        case Width::unsigned8:
        case Width::packed24:
            break;
    }
    mIntegers.resize(std::size_t{kBlockFrames} * mFacts.channels);
    const sf_count_t frames = sf_readf_int(mSound, mIntegers.data(), kBlockFrames);
    Pack();
    return frames;
}

// From samples at the top of 32 bits to 8 bits with their bias, or to three bytes.
void clSndfileStream::Pack() {
    std::uint8_t* to = mBlock.data();
    for (const std::int32_t sample : mIntegers) {
        const auto bits = static_cast<std::uint32_t>(sample);
        if (mWidth == Width::unsigned8) {
            *to++ = static_cast<std::uint8_t>((bits >> 24) ^ 0x80);
            continue;
        }
        for (unsigned shift = 8; shift < 32; shift += 8) *to++ = static_cast<std::uint8_t>(bits >> shift);
    }
}

std::span<const std::uint8_t> clSndfileStream::Read() {
    const std::uint64_t end = mFacts.frames.value_or(std::numeric_limits<std::uint64_t>::max());
    const std::uint64_t frames = std::min(ReadFrames(), end - mPosition);
    mPosition += frames;
    if (frames == 0) {
        ReportWhatIsMissing();
        return {};
    }
    return std::span(mBlock).first(static_cast<std::size_t>(frames) * FrameBytes(mFacts));
}

void clSndfileStream::ReportWhatIsMissing() {
    if (mMissingBytes > 0)
        Damage(Joined({u"the last ", NumberText(mMissingBytes).Text(), u" bytes of its audio are missing"})
                   .Text());
    else if (mFile.Error() != 0)
        Damage(Joined({u"can't be read (error ", NumberText(mFile.Error()).Text(), u")"}).Text());
    else if (sf_error(mSound) != SF_ERR_NO_ERROR)
        Damage(Joined({u"can't be decoded: ", Text(sf_strerror(mSound)).Text()}).Text());
}

bool clSndfileStream::Seek(std::uint64_t frame) {
    mPosition = frame;
    if (sf_seek(mSound, static_cast<sf_count_t>(frame), SEEK_SET) >= 0) return true;
    Damage(Joined({u"can't go to frame ", NumberText(frame).Text()}).Text());
    return false;
}
