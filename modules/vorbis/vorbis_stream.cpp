#include "modules/vorbis/vorbis_stream.h"

#define OV_EXCLUDE_STATIC_CALLBACKS
#include <vorbis/vorbisfile.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <type_traits>

#include "modules/support/byte_text.h"
#include "modules/support/property_text.h"

namespace {

constexpr int kMostFrames = 4096;

clOggCursor& Cursor(void* user) {
    return *static_cast<clOggCursor*>(user);
}

// Tells failure by errno, as the library asks for.
std::size_t ReadBytes(void* to, std::size_t size, std::size_t count, void* user) {
    std::size_t got = 0;
    if (!Cursor(user).Read(to, size * count, &got)) errno = EIO;
    return got / size;
}

int SeekBytes(void* user, ogg_int64_t offset, int whence) {
    return Cursor(user).Seek(offset, whence) ? 0 : -1;
}

// The library's own type is `long`, which on Windows ends at 2 GiB; script/codec-libraries builds it with one
// that doesn't.
using Place = std::invoke_result_t<decltype(ov_callbacks::tell_func), void*>;
static_assert(sizeof(Place) == 8,
              "libvorbisfile must be built with 64-bit positions: script/codec-libraries");

Place TellBytes(void* user) {
    return static_cast<Place>(Cursor(user).Position());
}

std::uint64_t NotNegative(std::int64_t number) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(number, 0));
}

void AddBitRate(clIDTagList& rows, const char16_t* name, long bitsPerSecond) {
    if (bitsPerSecond > 0) rows.Add(name, UnitText(NotNegative(bitsPerSecond) / 1000, u"kbit/s").Text());
}

}  // namespace

static_assert(OV_HOLE == -3 && OV_EBADLINK == -137);  // as clOggStream has them

clVorbisStream::clVorbisStream(const clModuleLog& log)
    : clOggStream(log), mDecoder(std::make_unique<OggVorbis_File>()) {}

clVorbisStream::~clVorbisStream() {
    ov_clear(mDecoder.get());
}

int clVorbisStream::OpenLibrary() {
    ov_clear(mDecoder.get());
    return ov_open_callbacks(&mCursor, mDecoder.get(), nullptr, 0,
                             {ReadBytes, SeekBytes, nullptr, TellBytes});
}

clOggStream::Sound clVorbisStream::OpenSound() const {
    const vorbis_info* info = ov_info(mDecoder.get(), 0);
    return {NotNegative(info->rate), NotNegative(info->channels),
            NotNegative(ov_pcm_total(mDecoder.get(), 0))};
}

void clVorbisStream::Describe() {
    const char* vendor = ov_comment(mDecoder.get(), 0)->vendor;
    if (vendor)
        mFacts.encoder = TextFromBytes(reinterpret_cast<const std::uint8_t*>(vendor), std::strlen(vendor));
}

int clVorbisStream::Decode() {
    float** planes = nullptr;
    int part = 0;
    const int frames = static_cast<int>(ov_read_float(mDecoder.get(), &planes, kMostFrames, &part));
    if (frames <= 0 || part != 0) return std::min(frames, 0);
    const std::size_t channels = mFacts.channels;
    mBlock.resize(static_cast<std::size_t>(frames) * channels);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        float* to = mBlock.data() + PlaceOf(channel);
        for (int i = 0; i < frames; ++i, to += channels) *to = planes[channel][i];
    }
    return frames;
}

int clVorbisStream::SeekLibrary(std::uint64_t frame) {
    return ov_pcm_seek(mDecoder.get(), static_cast<ogg_int64_t>(frame));
}

std::uint64_t clVorbisStream::BytesTaken() const {
    return NotNegative(ov_raw_tell(mDecoder.get()));
}

void clVorbisStream::AddPropertyRows(clIDTagList& rows) const {
    const vorbis_info* info = ov_info(mDecoder.get(), 0);
    AddBitRate(rows, u"Nominal bit rate", info->bitrate_nominal);
    AddBitRate(rows, u"Lowest bit rate", info->bitrate_lower);
    AddBitRate(rows, u"Highest bit rate", info->bitrate_upper);
    clOggStream::AddPropertyRows(rows);
}
