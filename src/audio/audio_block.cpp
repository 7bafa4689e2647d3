#include "audio/audio_block.h"

#include <algorithm>
#include <cstring>
#include <limits>

clAudioBlock::clAudioBlock(const QvFormat* silenceFormat) : clFormatHolder(silenceFormat) {
    if (!reserveBytes(BytesOf(kSilenceFrames))) return;
    if (format->wBitsPerSample == 8) std::memset(data, 128, capacity);  // unsigned: silence is the middle
}

bool clAudioBlock::setData(const void* source, std::uint32_t count, const QvFormat* record, bool adopt) {
    const std::uint32_t consumed = offset;
    setFormat(record);
    bool done = true;
    if (!source) {
        done = reserveBytes(count);
        bytes = done ? count : 0;
    } else if (adopt) {
        data = const_cast<std::uint8_t*>(static_cast<const std::uint8_t*>(source));
        capacity = bytes = count;
        adopted = 1;
    } else {
        store.Assign(source, count, 0);
        bytes = UseStore() ? count : 0;
    }
    offset = std::min(consumed, bytes);
    return done;
}

bool clAudioBlock::CopyFrom(const clAudioBlock& from) {
    const bool whole = setFormat(from.format);
    setData(from.data, from.bytes, format, false);
    return data && whole;
}

void clAudioBlock::Borrow(const std::uint8_t* source, std::uint32_t count, QvFormat* record) {
    format = record;
    data = const_cast<std::uint8_t*>(source);
    capacity = bytes = source ? count : 0;
    offset = 0;
    adopted = 1;
}

bool clAudioBlock::reserveBytes(std::uint64_t count) {
    if (!reserveToWrite(count)) return false;
    std::memset(data, 0, capacity);
    return true;
}

bool clAudioBlock::reserveToWrite(std::uint64_t count) {
    constexpr std::uint64_t kLimit = std::numeric_limits<std::uint32_t>::max();
    const bool countable = count <= kLimit;
    store.ResizeToWrite(countable ? static_cast<std::uint32_t>(count) : 0);
    UseStore();
    bytes = offset = 0;
    if (!countable) data = nullptr;
    return data != nullptr;
}

bool clAudioBlock::reserveFrames(std::uint32_t count, const QvFormat* record) {
    setFormat(record);
    return reserveBytes(BytesOf(count));
}

std::uint32_t clAudioBlock::BytesPerSample() const {
    return std::max<std::uint32_t>(format->wBitsPerSample / 8, 1);
}

std::uint32_t clAudioBlock::Channels() const {
    return std::max<std::uint32_t>(format->nChannels, 1);
}

// At most 13 bits for a sample, 16 for the channels and 32 for the frames: 64 hold it.
std::uint64_t clAudioBlock::BytesOf(std::uint32_t frameCount) const {
    return std::uint64_t{BytesPerSample()} * Channels() * frameCount;
}

bool clAudioBlock::UseStore() {
    data = store.Data();
    capacity = store.Size();
    adopted = 0;
    return data != nullptr;
}
