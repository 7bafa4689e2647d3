// libswresample changing depth, type or channels, the rate staying as it is: what ffmpeg runs for such work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct SwrContext;

enum class SwrSamples { Int16, Int32, Float32, Float64 };

struct SwrSide {
    SwrSamples samples = SwrSamples::Int16;
    int channels = 0;
    bool isPlanar = false;  // each channel by itself instead of interleaved
};

class Swresample {
  public:
    // `matrix` holds a row of coefficients for each output channel, or nothing where the channels stay. Ends the
    // program when the library refuses.
    Swresample(const SwrSide& from, const SwrSide& to, const std::vector<double>& matrix);
    Swresample(const Swresample&) = delete;
    Swresample& operator=(const Swresample&) = delete;
    ~Swresample();

    // Room for frames on both sides; planar channels stand one behind the other.
    void SetFrames(std::size_t frames);
    void Run();

    std::vector<std::uint8_t> in;
    std::vector<std::uint8_t> out;

  private:
    SwrSide from_;
    SwrSide to_;
    SwrContext* context_;
    std::size_t frames_ = 0;
    std::vector<std::uint8_t*> inPlanes_;
    std::vector<std::uint8_t*> outPlanes_;
};
