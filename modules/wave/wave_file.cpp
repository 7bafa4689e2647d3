#include "modules/wave/wave_file.h"

#include <algorithm>

#include "foundation/joined.h"
#include "modules/support/little_endian.h"
#include "modules/support/scale.h"

bool clWaveFile::Open(const char16_t* path, const clModuleLog& log) {
    mPath = path;
    XString trouble;
    if (!mReader.Open(path)) {
        trouble = Joined({u"can't be opened (error ", XString::FromUInt64(mReader.Error()).Text(), u")"});
    } else {
        trouble = ReadHeaders();
        if (mReader.Error() != 0)
            trouble = Joined({u"can't be read (error ", XString::FromUInt64(mReader.Error()).Text(), u")"});
    }
    if (trouble.IsEmpty()) return true;
    log.Error(path, trouble.Text());
    Close();
    return false;
}

XString clWaveFile::ReadHeaders() {
    mFormat = clWaveFormat();
    mAudio = clChunk();
    mFactFrames = 0;
    clChunkWalk walk(mReader);
    XString trouble = walk.Begin();
    if (trouble.IsEmpty() && mReader.Error() == 0) trouble = FindChunks(walk);
    mIs64 = walk.Is64();
    return trouble;
}

// The first chunk of each kind counts. The walk ends where both needed ones are known, so that nothing behind
// the audio is looked at; a fact chunk stands before the audio.
XString clWaveFile::FindChunks(clChunkWalk& walk) {
    bool hasFormat = false, hasAudio = false;
    clChunk chunk;
    while (!(hasFormat && hasAudio) && walk.Next(chunk)) {
        if (chunk.id == ChunkId("fmt ") && !hasFormat) {
            const XString refusal = TakeFormat(chunk);
            if (!refusal.IsEmpty()) return refusal;
            hasFormat = true;
        } else if (chunk.id == ChunkId("fact")) {
            TakeFact(chunk);
        } else if (chunk.id == ChunkId("data") && !hasAudio) {
            mAudio = chunk;
            hasAudio = true;
        }
    }
    if (hasFormat && hasAudio) return XString();
    if (walk.WasCutOff()) return u"it has too many chunks before its audio";
    return hasFormat ? u"it has no data chunk" : u"it has no fmt chunk";
}

XString clWaveFile::TakeFormat(const clChunk& chunk) {
    std::uint8_t bytes[sizeof(QvFormatExtensible)] = {};
    const std::uint64_t count = std::min<std::uint64_t>(chunk.available, sizeof bytes);
    if (!mReader.Fetch(chunk.position, bytes, static_cast<std::uint32_t>(count)))
        return u"its fmt chunk can't be read";
    return mFormat.TakeChunk(bytes, chunk.available);
}

void clWaveFile::TakeFact(const clChunk& chunk) {
    std::uint8_t bytes[4];
    if (chunk.available >= sizeof bytes && mReader.Fetch(chunk.position, bytes, sizeof bytes))
        mFactFrames = Get32(bytes);
}

std::uint64_t clWaveFile::AudioBytes() const {
    if (!mFormat.IsPlain()) return mAudio.available;
    return mAudio.available - mAudio.available % mFormat.Head().nBlockAlign;
}

// The fact chunk knows where in the last block a coded file ends. It can't make a file longer than its
// blocks.
std::uint64_t clWaveFile::Frames() const {
    const std::uint64_t frames = mFormat.FramesIn(AudioBytes());
    if (mFormat.IsPlain() || mFactFrames == 0) return frames;
    return mFormat.FramesPerBlock() == 0 ? mFactFrames : std::min(frames, mFactFrames);
}

std::uint64_t clWaveFile::LengthMs() const {
    return Scale(Frames(), 1000, mFormat.Head().nSamplesPerSec);
}
