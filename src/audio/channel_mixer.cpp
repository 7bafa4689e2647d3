// Mixing runs over pieces that stay in the first cache, each read, summed and written before the next is
// touched. Doubles need neither reading nor writing: they are summed where they stand. So are 16 bits, by far the
// most common, where the processor can move words freely.
#include "audio/channel_mixer.h"

#include <algorithm>
#include <cstring>

#include "audio/sample_values.h"

void clChannelMixer::SelectPair(std::uint32_t from, std::uint32_t to) {
    ForgetPair();
    if (from < 1 || from > kSpeakers || to < 1 || to > kSpeakers) return;
    fromChannels = from;
    toChannels = to;
    const clMixEntry& entry = entries[(from - 1) * kSpeakers + to - 1];
    for (std::uint32_t position = 1; position <= to; ++position) {
        clMixTerm* term = selected[position - 1];
        clMixTerm* const end = term + kMixChannels;
        for (const clMixRow& row : entry.rows)
            for (const clMixColumn& column : row.columns)
                if (column.position == position && column.coefficient != 0)
                    *term++ = {row.position, column.coefficient};
        if (term < end) term->position = 0;
    }
}

bool clChannelMixer::Mix(const clAudioBlock& in, std::uint32_t to) {
    const std::uint32_t from = in.format->nChannels;
    if (from == to) return output.CopyFrom(in);
    if (fromChannels != from || toChannels != to) SelectPair(from, to);
    const clSampleView source(in);
    if (fromChannels == 0 || !source.Fits()) return false;
    const std::uint32_t frames = in.frames();
    if (!Prepare(in, frames)) return false;
    MixFrames(in, frames, source.sampleKind);
    return true;
}

// Room for the result under its own record.
bool clChannelMixer::Prepare(const clAudioBlock& in, std::uint32_t frames) {
    clFormatHolder record;
    const bool whole = record.setFormat(in.format);
    record.SetChannels(static_cast<std::uint16_t>(toChannels));
    const bool kept = output.setFormat(record.format);
    if (!output.reserveToWrite(std::uint64_t{frames} * toChannels * in.BytesPerSample())) return false;
    output.bytes = output.capacity;
    return whole && kept;
}

void clChannelMixer::MixFrames(const clAudioBlock& in, std::size_t frames, SampleKind kind) {
    if (kind == SampleKind::None) {
        std::memset(output.data, 0, output.bytes);
    } else if (kind == SampleKind::Int16 && InstructionSetInUse() == InstructionSet::Avx512) {
        MixInt16Avx512(output.data, toChannels, in.data, fromChannels, frames, selected);
    } else {
        const std::size_t fromBytes = std::size_t{fromChannels} * in.BytesPerSample();
        const std::size_t toBytes = std::size_t{toChannels} * in.BytesPerSample();
        for (std::size_t done = 0; done < frames; done += kPieceFrames)
            MixPiece(output.data + done * toBytes, in.data + done * fromBytes,
                     std::min(kPieceFrames, frames - done), kind);
    }
}

void clChannelMixer::MixPiece(std::uint8_t* to, const std::uint8_t* from, std::size_t frames,
                              SampleKind kind) {
    MixLoop* const mix = kMixLoop.InUse();
    if (kind == SampleKind::Float64) return mix(to, toChannels, from, fromChannels, frames, selected);
    ReadSamples(inputs, from, frames * fromChannels, kind);
    mix(reinterpret_cast<std::uint8_t*>(sums), toChannels, reinterpret_cast<const std::uint8_t*>(inputs),
        fromChannels, frames, selected);
    WriteSamples(to, sums, frames * toChannels, kind);
}
