// Who brings sound to another rate: this library and its peers behind one face, each as its own users would set it up
// for quality. A converter serves one stream of interleaved frames.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct Rates {
    unsigned from = 0;
    unsigned to = 0;
    unsigned channels = 0;
};

// What came out of one block; lives until the next call. Doubles, or floats where the library knows only these.
struct Converted {
    const void* samples = nullptr;
    std::size_t frames = 0;
};

class RateConverter {
  public:
    RateConverter() = default;
    RateConverter(const RateConverter&) = delete;
    RateConverter& operator=(const RateConverter&) = delete;
    virtual ~RateConverter() = default;
    // `last` with the last block of the stream: all that is still on its way comes out with it.
    virtual Converted Process(const void* samples, std::size_t frames, bool last) = 0;
};

struct RateConverterKind {
    const char* name;
    const char* configuration;
    bool isFloat;  // takes and gives floats
    // Ends the program when the library refuses the rates.
    std::unique_ptr<RateConverter> (*make)(const Rates& rates);
};

// Ours first.
const std::vector<RateConverterKind>& RateConverters();
// Null for an unknown name.
const RateConverterKind* FindRateConverter(const std::string& name);

// The whole of a stream in blocks of `blockFrames`, doubles on both sides whatever the library takes.
std::vector<double> ConvertWhole(const RateConverterKind& kind, const Rates& rates,
                                 const std::vector<double>& samples, std::size_t blockFrames);
