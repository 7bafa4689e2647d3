// clResamplerPlan: how one rate is made of another, in numbers: what clResampler builds its filters from.
//
// No sample is ever guessed between two others: both rates divide a common one, and the way leads over it.
//
//     up    source --polyphase--> oversample x target --FFT low-pass, every oversample-th kept--> target
//     down  source, zeros between --FFT low-pass--> oversample x source --polyphase--> target
//
// The long, steep filter is the one applied by FFT, at the lower of the two rates on the way; the polyphase
// filter only has to keep out what lies beyond, in a transition as wide as the oversampling leaves it. The
// reduced ratio must hold a factor 2 or 3 to oversample by, or be 1.
//
// Rates are hertz. Everything is computed in 64 bits.
#pragma once

#include <cstdint>

struct clResamplerPlan {
    struct Filter {
        std::int64_t length = 0;  // taps, odd
        std::int64_t rate = 0;    // it works at
        double cutoff = 0;
        double gain = 1;  // makes up for the zeros between samples
    };

    // What a run works in, in doubles.
    struct Buffers {
        std::int64_t block, picked;             // once
        std::int64_t in, out, input, overhang;  // for each channel
    };

    // Fills the plan. False when the pair can't be reached: a rate of 0, or so low a one that the transition leaves
    // nothing of it, a ratio without the factors, or tables and buffers beyond 512 MiB for so many channels. Nothing
    // is allocated.
    bool Make(std::int64_t source, std::int64_t target, std::int64_t channels);

    Buffers Lengths() const;
    // Downward: doubles in front of a block, for what the polyphase filter still needs of the one before.
    std::int64_t Lead() const;

    // The rates that are worked with: high ones are halved or quartered both, which leaves the ratio but for
    // what a division drops.
    std::int64_t sourceRate = 0;
    std::int64_t targetRate = 0;
    bool upward = false;
    std::int64_t oversample = 1;  // 1, 2 or 3
    std::int64_t firstRate = 0;   // the first filter's, and the second's
    std::int64_t secondRate = 0;

    Filter polyphase;
    std::int64_t phases = 1;  // rows of the polyphase filter: its output advances by stride / phases of an
    std::int64_t stride = 1;  // input sample
    std::int64_t width = 1;   // taps in a row
    Filter lowPass;           // applied by FFT
    std::int64_t fftLength = 0;
    std::int64_t delay = 0;    // output frames in which only the filters' start comes out
    std::int64_t padding = 0;  // upward: zeros that stand before the first frame

  private:
    void Substitute();
    bool ChooseOversampling(std::int64_t term);
    void PlanDown(std::int64_t divisor);
    void PlanUp(std::int64_t divisor);
    void PlanLowPass(std::int64_t rate);
    void PlanPolyphase(std::int64_t rate, std::int64_t inputRate, std::int64_t gap);
    std::int64_t Bytes(std::int64_t channels) const;
};
