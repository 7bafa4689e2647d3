// The way of a block: the carry hands out what a step wants, the step (resampler_steps.cpp) filters it channel by
// channel and writes what is kept behind what the output holds already.
//
// The exact length is seen to here, at the end of a stream. How much silence the filters need is computed from
// the frames that are due; the last step then stops close behind them, and what is over is cut off. A later last
// block finds the cut part counted as given and is not cut any more.
#include "audio/resampler.h"

#include <algorithm>

namespace {

constexpr std::int64_t kMostBeyond = std::int64_t{1}
                                     << 20;  // frames behind the due ones: more than any usual pair has

}  // namespace

bool clResampler::Design(const clAudioBlock& source, std::uint32_t target) {
    Release();
    targetRateAsked = target;
    sourceRateAsked = source.format->nSamplesPerSec;
    if (target == sourceRateAsked) return true;
    const clSampleView view(source);
    if (source.format->wBitsPerSample < 8 || source.format->nChannels == 0 || !view.Fits()) return false;
    if (!plan.Make(sourceRateAsked, target, source.format->nChannels)) return false;
    polyphase.Design(plan);
    lowPass.Design(plan);
    sampleKind = view.sampleKind;
    sampleBytes = source.BytesPerSample();
    delay = plan.delay;
    held = plan.padding;
    firstBlock = true;
    AllocateBuffers(source.format->nChannels);
    channels = source.format->nChannels;  // last: now there is a design
    return true;
}

// Zeroed: what stands before the first frame is silence.
void clResampler::AllocateBuffers(std::size_t count) {
    const clResamplerPlan::Buffers lengths = plan.Lengths();
    const auto size = [](std::int64_t length) { return static_cast<std::size_t>(length); };
    inBuffer.assign(size(lengths.in) * count, 0.0);
    outBuffer.assign(size(lengths.out) * count, 0.0);
    block.Assign(size(lengths.block));
    picked.assign(size(lengths.picked), 0.0);
    inputs.assign(count, std::vector<double>(size(lengths.input)));
    overhangs.resize(count);
    for (clAlignedDoubles& each : overhangs) each.Assign(size(lengths.overhang));
}

void clResampler::Release() {
    carry.Clear();
    plan = {};
    polyphase.Release();
    lowPass.Release();
    inBuffer = outBuffer = picked = {};
    block = {};
    inputs = {};
    overhangs = {};
    targetRateAsked = sourceRateAsked = 0;
    channels = 0;
    ended = false;
    held = position = made = outPhase = overhang = delay = 0;
    framesRead = framesWritten = bytesIn = bytesOut = 0;
}

bool clResampler::Serves(const clAudioBlock& in) const {
    return in.format->nChannels == channels && in.BytesPerSample() == sampleBytes &&
           clSampleView(in).sampleKind == sampleKind;
}

bool clResampler::Process(const clAudioBlock& in, bool final) {
    const bool thereAlready = in.format->nSamplesPerSec == targetRateAsked;
    if (!thereAlready && !Serves(in) && !Design(in, targetRateAsked)) return false;
    bytesIn += in.bytes;
    if (thereAlready) return output.CopyFrom(in);
    bool done = StartOutput(in) && carry.Append(in, true) && RunSteps(false);
    if (done && final) done = PushSilence(in);
    carry.Compact(0);  // the caller's block is about to go, also after a failure
    if (!done) return false;
    bytesOut += output.bytes;
    if (final) Trim();
    return true;
}

// An empty block with a store: room for what the waiting input will give is made as it comes.
bool clResampler::StartOutput(const clAudioBlock& in) {
    const bool whole = output.setFormat(in.format);
    output.SetRate(targetRateAsked);
    output.store.Resize(output.store.Capacity(), false, 0);
    output.data = output.store.Data();
    output.capacity = output.store.Size();
    output.bytes = output.offset = 0;
    output.adopted = 0;
    return whole && output.data != nullptr;
}

bool clResampler::RunSteps(bool final) {
    const std::int64_t frameBytes = FrameBytes();
    for (;;) {
        // Upward no room is left behind the end of a stream. And where one frame is many at the target rate, more
        // would come of the silence behind an end than anybody waits for.
        if (ended || (final && output.bytes / frameBytes > DueFrames() + kMostBeyond)) {
            carry.Clear();
            return true;
        }
        const std::int64_t want = Want();
        const std::int64_t take = std::min(want, carry.held() / frameBytes);
        if (take < want && (take == 0 || !final)) return true;
        const clAudioBlock& taken = carry.Take(static_cast<std::uint32_t>(take * frameBytes));
        const bool last = final && carry.held() < frameBytes;
        if (!(plan.upward ? ProcessUp(last, taken, want) : ProcessDown(last, taken, want))) return false;
    }
}

// As many blocks of silence as the frames that are due need to come out: one, unless the delay is longer, or
// the rates that are worked with are not quite in the ratio of those asked for.
bool clResampler::PushSilence(const clAudioBlock& in) {
    constexpr std::int64_t kBlock = clAudioBlock::kSilenceFrames;
    constexpr std::int64_t kMargin = 2;  // output frames: positions are rounded
    const std::int64_t needed = (DueFrames() + plan.delay + kMargin) * plan.sourceRate / plan.targetRate + 1;
    const std::int64_t missing = needed - framesRead - carry.held() / FrameBytes();
    clAudioBlock silence(in.format);
    silence.bytes =
        static_cast<std::uint32_t>(std::min<std::int64_t>(kBlock * FrameBytes(), silence.capacity));
    if (!silence.data) return false;
    for (std::int64_t blocks = std::max<std::int64_t>((missing + kBlock - 1) / kBlock, 1); blocks > 0;
         --blocks)
        if (!carry.Append(silence, false) || !RunSteps(blocks == 1)) return false;
    return true;
}

// The frames of the whole stream so far at the target rate.
std::int64_t clResampler::DueFrames() const {
    return bytesIn / FrameBytes() * targetRateAsked / sourceRateAsked;
}

// What is over this time is not taken off `bytesOut`.
void clResampler::Trim() {
    const std::int64_t over = bytesOut - DueFrames() * FrameBytes();
    if (over >= 1 && over <= output.bytes) output.bytes -= static_cast<std::uint32_t>(over);
}
