// An effect module as the converter has it: loaded from the tree, given audio in pieces, asked for its tail.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/dsp_module.h"
#include "support/codec/log_files.h"

// PCM or float of so many bits; fewer valid bits make the record an extensible one.
QvFormatExtensible SampleFormat(std::uint16_t bits, bool isFloat, std::uint16_t channels = 2,
                                std::uint32_t rate = 1000, std::uint16_t validBits = 0);

// The six ways in which samples are stored.
struct Depth {
    std::uint16_t bits;
    bool isFloat;
};
inline constexpr Depth kDepths[] = {{8, false},  {16, false}, {24, false},
                                    {32, false}, {32, true},  {64, true}};

// Random audio up to full scale, and for integers every bit of it.
std::string Noise(const QvFormatExtensible& format, std::size_t frames);

// The slow obvious twin of an effect: every sample times the factor that its frame and the number of frames
// behind it have.
using FactorOf = double (*)(std::size_t frame, std::size_t framesBehind);
std::string Twin(const QvFormatExtensible& format, std::string_view audio, FactorOf factor);

struct EffectRun {
    bool began = false;
    bool good = false;  // every call, the end included
    std::string audio;
    std::size_t tailBlocks = 0;  // how many came once the last block was in
    QvFormatExtensible format{};
    std::u16string errors;
};

class EffectModule {
  public:
    explicit EffectModule(std::u16string_view name);  // expects it to load

    bool Begin(const char16_t* settings, const QvFormatExtensible& format);
    // One block in and what comes out appended to the audio; true when the effect could. `finished` is what it said.
    bool Pass(std::string_view in, bool isLast, std::string& audio, bool* finished);
    bool End() { return mEffect.EndConversion(&mSession); }

    // `pieces` are the lengths of the blocks in frames, the last of them repeated to the end.
    EffectRun Run(const char16_t* settings, const QvFormatExtensible& format, std::string_view audio,
                  std::vector<std::size_t> pieces = {4096});

    clQvDSP& Effect() { return mEffect; }
    clEffectSessionRec& Session() { return mSession; }
    LogFiles& Log() { return mLog; }

  private:
    LogFiles mLog;
    clQvDSP mEffect;
    clEffectSessionRec mSession{};
};
