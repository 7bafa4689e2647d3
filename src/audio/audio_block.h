// clAudioBlock: a format and a run of interleaved samples, the form in which audio travels from stage to
// stage.
//
// A block owns its samples in `store`, or has adopted bytes that somebody else keeps alive while the block is
// read; those it never frees and nobody writes through it. Nothing here reports in words: after a failed
// allocation `data` is null and every count 0. Sizes are computed in 64 bits; one that a block can't count is
// refused like an allocation.
//
// The stages read and write the fields themselves and keep offset <= bytes <= capacity.
#pragma once

#include <cstdint>

#include "audio/format.h"

class clAudioBlock : public clFormatHolder {
  public:
    static constexpr std::uint32_t kSilenceFrames = 16384;

    clAudioBlock() = default;
    // Room for kSilenceFrames frames, filled with silence. `bytes` is 0: the caller says how much of it is
    // wanted.
    explicit clAudioBlock(const QvFormat* silenceFormat);

    // Makes `count` bytes at `source` the samples: adopted as they are, or copied. A null source makes room
    // for them instead, zeroed, and this alone is false when there is no memory: a copy that failed is true,
    // with null data.
    bool setData(const void* source, std::uint32_t count, const QvFormat* record, bool adopt);
    // Becomes a copy of another block: samples and record. False when there is no memory for either; the
    // block is then not to be read.
    bool CopyFrom(const clAudioBlock& from);
    // Becomes a passing view of samples and of a record that both stay somebody else's, who keeps them in
    // place while it is read. Needs no memory.
    void Borrow(const std::uint8_t* source, std::uint32_t count, QvFormat* record);
    // Zeroed room in the block's own store, nothing of it valid yet. True when there is a store.
    bool reserveBytes(std::uint64_t count);
    // The same, but what the room holds is anything: for a stage that writes all of it.
    bool reserveToWrite(std::uint64_t count);
    bool reserveFrames(std::uint32_t count, const QvFormat* record);

    // A sample has 1 byte at least and a frame 1 channel, whatever the record says.
    std::uint32_t BytesPerSample() const;
    std::uint32_t Channels() const;
    std::uint32_t frames() const { return bytes / BytesPerSample() / Channels(); }
    std::uint32_t capacityFrames() const { return capacity / BytesPerSample() / Channels(); }

    clByteStore store;
    std::uint8_t* data = nullptr;
    std::uint32_t capacity = 0;  // bytes that `data` may hold
    std::uint32_t bytes = 0;     // of them valid
    std::uint32_t offset = 0;    // of these consumed
    std::uint8_t adopted = 0;

  private:
    std::uint64_t BytesOf(std::uint32_t frameCount) const;
    bool UseStore();
};
