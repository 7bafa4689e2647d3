// clChannelMixer: the channel stage, which makes a block of 1 to 8 channels of a block of 1 to 8 others.
//
// Where a channel's speaker stands follows from the count alone, never from a record's mask. Each output
// channel is a sum of input channels times fixed coefficients. They are worked out once for all pairs of
// counts: a rule gives one for each pair of speakers, and a second pass keeps sums from growing loud. Sums are
// neither scaled nor limited after that: integers saturate when they are written, floats keep what comes out.
//
// Samples are read, summed and written as doubles, each sum in the order of the input's speakers, so that all
// instruction sets give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/audio_block.h"
#include "audio/mix_loops.h"
#include "audio/sample_view.h"

inline constexpr std::uint32_t kSpeakers = kMixChannels;

// How one speaker of a layout is heard from the speakers of another. Positions count the channels of a frame;
// at 0 the layout has no such speaker, and the coefficient stays 0.
struct clMixColumn {
    double coefficient = 0;
    std::uint32_t position = 0;  // of the target speaker
};
struct clMixRow {
    clMixColumn columns[kSpeakers];  // by target speaker
    std::uint32_t position = 0;      // of the source speaker
};
struct clMixEntry {
    std::uint32_t from = 0;  // channels
    std::uint32_t to = 0;
    clMixRow rows[kSpeakers];  // by source speaker
};

class clChannelMixer {
  public:
    // Speakers by number less one, and layouts by channels less one.
    static const char kSpeakerNames[kSpeakers][30];
    static const char kLayoutNames[kSpeakers][30];
    // The position of a speaker, from 1, among so many channels, 1 to 8; 0 where it is absent.
    static std::uint32_t PositionOf(std::uint32_t speaker, std::uint32_t channels);

    // The rule: how loud a source speaker, from 1, of a layout is in a target speaker of another.
    static double PairCoefficient(std::uint32_t from, std::uint32_t to, std::uint32_t source,
                                  std::uint32_t target);

    // Fills the table for all pairs. Called once, before the first block whose channels change.
    void BuildTables();
    // Makes the rows of sums of a pair the ones to mix by; a count outside 1 to 8 leaves no pair.
    void SelectPair(std::uint32_t from, std::uint32_t to);
    // Makes `output` what `in` is in `to` channels; as many as there are pass through, however many. False
    // when either count is 0 or above 8, for float in other containers than 32 and 64 bits, or when there is
    // no memory; `output` is then not to be read.
    bool Mix(const clAudioBlock& in, std::uint32_t to);
    // The next block chooses its pair of counts anew.
    void ForgetPair() { fromChannels = toChannels = 0; }

    clAudioBlock output;
    clMixEntry entries[kSpeakers * kSpeakers];  // from (less one) times 8, and to (less one)
    std::uint32_t fromChannels = 0;             // the pair that was chosen, 0 for none
    std::uint32_t toChannels = 0;
    clMixTerms selected[kSpeakers] = {};  // by output channel

  private:
    // As many frames as stay close to the processor with all their channels, on both sides.
    static constexpr std::size_t kPieceFrames = 128;

    bool Prepare(const clAudioBlock& in, std::uint32_t frames);
    void MixFrames(const clAudioBlock& in, std::size_t frames, SampleKind kind);
    void MixPiece(std::uint8_t* to, const std::uint8_t* from, std::size_t frames, SampleKind kind);

    double inputs[kPieceFrames * kSpeakers];  // a piece of the input as doubles
    double sums[kPieceFrames * kSpeakers];    // and what becomes of it
};
