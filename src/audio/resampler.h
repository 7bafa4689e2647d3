// clResampler: the rate stage. Takes blocks of any size at one rate, and gives blocks at another.
//
// It is designed once, for the first block, and then runs in steps of half a transform's length: input waits in
// the carry until a step can be fed, so the same audio gives the same samples however it is cut into blocks. What
// comes out first is the start of the filters, which is thrown away. With the last block silence is pushed
// through until the audio is out, and the end is trimmed: a stream of n frames gives n * target / source frames,
// rounded down. Aligned to within about a frame: the delay that is thrown away is a whole number of frames.
//
// Samples keep their depth and type. In between they are doubles, and integers saturate on the way out. A
// design serves one stream: nothing rewinds, and what follows the last block of a stream comes after its
// filters' state. One thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/aligned_doubles.h"
#include "audio/audio_block.h"
#include "audio/block_carry.h"
#include "audio/fft_filter.h"
#include "audio/polyphase_filter.h"
#include "audio/resampler_plan.h"
#include "audio/sample_view.h"

class clResampler {
  public:
    // Prepares for blocks like `source`, whose samples are not read, at another rate; what was held is lost. At
    // an equal rate there is nothing to prepare. False when the rate can't be reached or the format has no
    // samples. Raises when there is no memory for tables.
    bool Design(const clAudioBlock& source, std::uint32_t target);
    // Makes `output` what comes out now: empty while the filters fill. `final` with the last block of a stream,
    // which may be empty. A block that is at the target rate already is copied; one of other channels, depth or
    // kind than the design's makes a new design. False when there is no memory: `output` must not be read.
    bool Process(const clAudioBlock& in, bool final);
    // Forgets the design and frees what it took.
    void Release();

    clAudioBlock output;
    clBlockCarry carry;  // input that waits for a step
    clResamplerPlan plan;
    std::uint32_t targetRateAsked = 0;
    std::uint32_t sourceRateAsked = 0;
    std::int64_t delay = 0;  // output frames still to be thrown away

  private:
    // What a step keeps of its output: so many frames behind the first `skip`.
    struct Kept {
        std::int64_t skip;
        std::int64_t frames;
        bool finished;  // the stream ended: what the step read is not moved on
    };

    bool Serves(const clAudioBlock& in) const;
    void AllocateBuffers(std::size_t count);
    bool StartOutput(const clAudioBlock& in);
    bool PushSilence(const clAudioBlock& in);
    bool RunSteps(bool final);
    void Trim();

    std::int64_t Want() const;
    bool ProcessUp(bool last, const clAudioBlock& taken, std::int64_t want);
    bool ProcessDown(bool last, const clAudioBlock& taken, std::int64_t want);
    void FilterUp(std::size_t channel, std::int64_t want);
    void FilterDown(std::size_t channel, std::int64_t want, std::int64_t got, bool finished);
    void DropUsed();
    void Read(const clAudioBlock& taken, std::int64_t want);
    void Spread(std::size_t channel, std::int64_t want, double* to, std::int64_t apart) const;
    Kept Keep(std::int64_t got, bool last);
    bool Write(const Kept& kept);

    std::int64_t DueFrames() const;
    std::int64_t FrameBytes() const { return static_cast<std::int64_t>(channels * sampleBytes); }

    clPolyphaseFilter polyphase;
    clFftFilter lowPass;
    std::vector<double> inBuffer;    // a step's input, interleaved, where it isn't doubles already
    const double* frames = nullptr;  // a step's input
    std::vector<double> outBuffer;   // and its output
    clAlignedDoubles block;          // one channel on its way through the low-pass
    std::vector<double> picked;      // downward: one channel of output
    std::vector<std::vector<double>>
        inputs;  // by channel: what the polyphase filter reads, downward what it needs again
    std::vector<clAlignedDoubles> overhangs;  // by channel: what the low-pass gives beyond a step

    std::size_t channels = 0;  // 0 while there is no design
    std::size_t sampleBytes = 0;
    SampleKind sampleKind = SampleKind::None;
    bool firstBlock = true;     // until the delay is thrown away
    bool ended = false;         // upward: a stream has ended
    std::int64_t held = 0;      // upward: frames in `inputs`
    std::int64_t position = 0;  // of the next polyphase output in `inputs`, in phases of a sample
    std::int64_t made = 0;      // polyphase outputs so far, modulo the filter's cycle
    std::int64_t outPhase = 0;  // upward: samples of the low-pass to leave out before the next that is kept
    std::int64_t overhang = 0;  // downward: zeros due before the next input sample
    std::int64_t framesRead = 0;
    std::int64_t framesWritten = 0;
    std::int64_t bytesIn = 0;
    std::int64_t bytesOut = 0;
};
