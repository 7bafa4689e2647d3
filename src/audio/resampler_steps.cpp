// One step of a resampler: it takes what half a transform can hold, and filters channel by channel.
//
// Upward the polyphase filter goes first: it reads `inputs`, where what a step has not used up stands in front
// of the next, and fills half a transform at the oversampled rate. Every oversample-th sample of what the
// low-pass makes of it is kept.
//
// Downward the low-pass goes first: it takes the input with zeros between. From its output, behind what `inputs`
// keeps of the step before, the polyphase filter picks the output frames.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "audio/resampler.h"
#include "audio/sample_values.h"

namespace {

std::int64_t DivideUp(std::int64_t number, std::int64_t divisor) {
    return (number + divisor - 1) / divisor;
}

}  // namespace

// The frames that one step uses. Upward that may be none, where a frame lasts longer than a step.
std::int64_t clResampler::Want() const {
    if (!plan.upward) return (lowPass.Half() - overhang - 1) / plan.oversample + 1;
    return plan.sourceRate * lowPass.Half() / plan.secondRate + 1 + plan.width - held;
}

bool clResampler::ProcessUp(bool last, const clAudioBlock& taken, std::int64_t want) {
    const std::int64_t half = lowPass.Half();
    const std::int64_t got = DivideUp(half - outPhase, plan.oversample);
    Read(taken, want);
    for (std::size_t channel = 0; channel < channels; ++channel) FilterUp(channel, want);
    held += want;
    outPhase += got * plan.oversample - half;
    made = (made + half) % polyphase.Cycle();
    position += plan.stride * half;
    const Kept kept = Keep(got, last);
    ended = kept.finished;
    if (!ended) DropUsed();
    return Write(kept);
}

void clResampler::FilterUp(std::size_t channel, std::int64_t want) {
    std::vector<double>& input = inputs[channel];
    Spread(channel, want, input.data() + held, 1);
    polyphase.Run(block.Data(), input.data() + DivideUp(position, plan.phases), lowPass.Half(), made);
    lowPass.Apply(block.Data(), overhangs[channel].Data());
    double* to = outBuffer.data() + channel;
    for (std::int64_t i = outPhase; i < lowPass.Half(); i += plan.oversample, to += channels)
        *to = block.Data()[i];
}

// The next step goes on at the sample before the next output.
void clResampler::DropUsed() {
    const std::int64_t used = (position - 1) / plan.phases;
    for (std::vector<double>& input : inputs)
        std::memmove(input.data(), input.data() + used,
                     static_cast<std::size_t>(held - used) * sizeof(double));
    held -= used;
    position -= used * plan.phases;
}

bool clResampler::ProcessDown(bool last, const clAudioBlock& taken, std::int64_t want) {
    const std::int64_t end =
        plan.phases * lowPass.Half();  // the last position that this step's input reaches
    const std::int64_t got = position > end ? 0 : (end - position) / plan.stride + 1;
    Read(taken, want);
    const Kept kept = Keep(got, last);
    for (std::size_t channel = 0; channel < channels; ++channel)
        FilterDown(channel, want, got, kept.finished);
    overhang += want * plan.oversample - lowPass.Half();
    made = (made + got) % polyphase.Cycle();
    position += plan.stride * got - (kept.finished ? 0 : end);
    return Write(kept);
}

// The polyphase filter reads the step's block where the low-pass left it, with the last samples of the step before
// put in front.
void clResampler::FilterDown(std::size_t channel, std::int64_t want, std::int64_t got, bool finished) {
    const auto half = static_cast<std::size_t>(lowPass.Half()), past = inputs[channel].size();
    double* const now = block.Data() + plan.Lead();
    std::fill(now, now + overhang, 0.0);
    Spread(channel, want, now + overhang, plan.oversample);
    lowPass.Apply(now, overhangs[channel].Data());
    double* const input = now - past;
    std::copy(inputs[channel].begin(), inputs[channel].end(), input);
    if (got > 0) polyphase.Run(picked.data(), input + DivideUp(position, plan.phases), got, made);
    for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i)
        outBuffer[i * channels + channel] = picked[i];
    if (finished) return;
    std::copy_n(input + half, past, inputs[channel].begin());
}

// The samples of a block as doubles, and silence up to what the step wants. Doubles are read where they stand.
void clResampler::Read(const clAudioBlock& taken, std::int64_t want) {
    const std::size_t samples = static_cast<std::size_t>(taken.bytes) / sampleBytes;
    const std::size_t wanted = static_cast<std::size_t>(want) * channels;
    framesRead += static_cast<std::int64_t>(samples / channels);
    const bool isAligned = reinterpret_cast<std::uintptr_t>(taken.data) % alignof(double) == 0;
    if (sampleKind == SampleKind::Float64 && samples == wanted && isAligned) {
        frames = reinterpret_cast<const double*>(taken.data);
        return;
    }
    ReadSamples(inBuffer.data(), taken.data, samples, sampleKind);
    std::fill(inBuffer.data() + samples, inBuffer.data() + wanted, 0.0);
    frames = inBuffer.data();
}

// One channel of what was read, with zeros between the samples that make them `apart` doubles apart: 1, 2 or 3.
void clResampler::Spread(std::size_t channel, std::int64_t want, double* to, std::int64_t apart) const {
    const double* from = frames + channel;
    const double* const end = from + static_cast<std::size_t>(want) * channels;
    if (apart == 1)
        for (; from < end; from += channels) *to++ = *from;
    else if (apart == 2)
        for (; from < end; from += channels, to += 2) to[0] = *from, to[1] = 0.0;
    else
        for (; from < end; from += channels, to += 3) to[0] = *from, to[1] = to[2] = 0.0;
}

// The first frames are the filters' start. The last step of a stream, which was filled up with silence, stops two
// frames behind what all its input gives; where exactly the stream ends is seen to when all of it is there.
clResampler::Kept clResampler::Keep(std::int64_t got, bool last) {
    if (firstBlock && got < delay) {
        delay -= got;
        return {0, 0, false};
    }
    constexpr std::int64_t kBeyond = 2;
    Kept kept = {firstBlock ? delay : 0, 0, false};
    kept.frames = got - kept.skip;
    if (last) {
        const double expected =
            static_cast<double>(framesRead * plan.targetRate) / static_cast<double>(plan.sourceRate);
        kept.finished = expected + kBeyond <= static_cast<double>(framesWritten + kept.frames);
        if (kept.finished)
            kept.frames = static_cast<std::int64_t>(std::floor(expected)) + kBeyond - framesWritten;
    } else {
        firstBlock = false;
    }
    kept.frames = std::max<std::int64_t>(kept.frames, 0);
    framesWritten += kept.frames;
    return kept;
}

// Behind what the output holds already. Samples of no kind stay the silence that they were read as.
bool clResampler::Write(const Kept& kept) {
    const std::int64_t fresh = kept.frames * FrameBytes(), total = output.bytes + fresh;
    constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
    const auto size = static_cast<std::uint32_t>(std::min(total, kMost));
    output.store.Resize(size, true, size / 10);
    output.data = total <= kMost ? output.store.Data() : nullptr;
    output.capacity = output.data ? output.store.Size() : 0;
    if (!output.data) return false;
    std::uint8_t* const to = output.data + output.bytes;
    if (sampleKind == SampleKind::None) std::memset(to, 0, static_cast<std::size_t>(fresh));
    WriteSamples(to, outBuffer.data() + static_cast<std::size_t>(kept.skip) * channels,
                 static_cast<std::size_t>(kept.frames) * channels, sampleKind);
    output.bytes = size;
    return true;
}
