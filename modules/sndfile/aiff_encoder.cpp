#include "modules/sndfile/aiff_encoder.h"

#include <sndfile.h>

#include <algorithm>

#include "modules/support/settings.h"

// What libsndfile asks of a file. It reads nothing back, and writes again only what it has written.
struct AiffCallbacks {
    static clAiffEncoder& Of(void* user) { return *static_cast<clAiffEncoder*>(user); }

    static sf_count_t Size(void* user) { return static_cast<sf_count_t>(Of(user).mWriter.Size()); }
    static sf_count_t Tell(void* user) { return static_cast<sf_count_t>(Of(user).mPosition); }

    static sf_count_t Seek(sf_count_t offset, int whence, void* user) {
        clAiffEncoder& self = Of(user);
        const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? Tell(user) : Size(user);
        self.mPosition = static_cast<std::uint64_t>(std::clamp<sf_count_t>(base + offset, 0, Size(user)));
        return Tell(user);
    }

    static sf_count_t Read(void*, sf_count_t, void*) { return 0; }

    static sf_count_t Write(const void* data, sf_count_t count, void* user) {
        return Of(user).Write(data, static_cast<std::uint32_t>(count)) ? count : 0;
    }
};

namespace {

// What the sizes of the format, 32 bits each, can count, less room for the headers.
constexpr std::uint64_t kMostAudioBytes = 0xFFFFFFFF - 4096;
constexpr std::uint32_t kMostChannels = 256;

int CodecFor(const clSampleInput& input) {
    if (input.IsFloat()) return SF_FORMAT_FLOAT;
    switch (input.Bits()) {
        case 8:
            return SF_FORMAT_PCM_S8;
        case 16:
            return SF_FORMAT_PCM_16;
        case 24:
            return SF_FORMAT_PCM_24;
        default:
            return SF_FORMAT_PCM_32;
    }
}

}  // namespace

XString clAiffEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    mPosition = mAudioBytes = 0;
    const XString trouble = clSettings(settings).Trouble();  // it has none
    if (!trouble.IsEmpty()) return trouble;
    const XString refusal = mInput.Take(format, kMostChannels);
    if (!refusal.IsEmpty()) return refusal;
    if (mInput.IsFloat() && mInput.Bits() == 64) return XString(u"float samples of 64 bits can't be encoded");
    return XString();
}

bool clAiffEncoder::Start() {
    SF_INFO info{};
    info.samplerate = static_cast<int>(mInput.Rate());
    info.channels = static_cast<int>(mInput.Channels());
    info.format = SF_FORMAT_AIFF | CodecFor(mInput);
    SF_VIRTUAL_IO io = {AiffCallbacks::Size, AiffCallbacks::Seek, AiffCallbacks::Read, AiffCallbacks::Write,
                        AiffCallbacks::Tell};
    mSound = sf_open_virtual(&io, SFM_WRITE, &info, this);
    if (mSound) {
        sf_command(mSound, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
        return true;
    }
    return mWriter.Error() != 0 ? FailWriting() : Fail(u"the library refuses to write this format");
}

// The first write of a place appends, every later one replaces; one that does both is cut in two.
bool clAiffEncoder::Write(const void* data, std::uint32_t count) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    const auto inside =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(count, mWriter.Size() - mPosition));
    if (inside > 0 && !mWriter.Rewrite(mPosition, bytes, inside)) return false;
    if (count > inside && !mWriter.Append(bytes + inside, count - inside)) return false;
    mPosition += count;
    return true;
}

bool clAiffEncoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    mAudioBytes += bytes;
    if (mAudioBytes > kMostAudioBytes) return Fail(u"an AIFF file can't hold more than 4 GiB");
    const auto frames = [this](std::size_t samples) {
        return static_cast<sf_count_t>(samples / mInput.Channels());
    };
    const bool written =
        mInput.IsFloat()
            ? mInput.Floats(data, bytes,
                            [&](std::span<const float> piece) {
                                return sf_writef_float(mSound, piece.data(), frames(piece.size())) ==
                                       frames(piece.size());
                            })
            : mInput.Integers(data, bytes, 32, [&](std::span<const std::int32_t> piece) {
                  return sf_writef_int(mSound, piece.data(), frames(piece.size())) == frames(piece.size());
              });
    return written || FailWriting();
}

bool clAiffEncoder::Complete() {
    const int trouble = sf_close(mSound);
    mSound = nullptr;
    if (trouble != 0 || mWriter.Error() != 0 || !UncountPadding()) return FailWriting();
    return mInput.EndsWhole() || Fail(u"its audio ends within a frame");
}

// The library takes the byte that pads an odd number of 8-bit samples for a sample of its own, and counts it in
// the two places that stand at fixed positions in such a file.
bool clAiffEncoder::UncountPadding() {
    constexpr std::uint64_t kFrameCount = 22, kSizeOfSound = 42;
    constexpr std::uint32_t kHeadOfSound = 8;
    if (mInput.Bits() != 8 || mAudioBytes % 2 == 0) return true;
    const auto rewrite = [this](std::uint64_t position, std::uint64_t number) {
        std::uint8_t bytes[4];
        for (int i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
        return mWriter.Rewrite(position, bytes, sizeof bytes);
    };
    return rewrite(kFrameCount, mAudioBytes / mInput.Channels()) &&
           rewrite(kSizeOfSound, mAudioBytes + kHeadOfSound);
}

void clAiffEncoder::Release() {
    if (mSound) sf_close(mSound);
    mSound = nullptr;
}
