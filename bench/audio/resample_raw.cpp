// Brings raw samples to another rate through this library or one of its peers, so that their sound can be compared:
//
//     qv_resample_raw --with NAME --from RATE --to RATE [--channels N] <IN >OUT
//     qv_resample_raw --list
//
// Samples are doubles as they lie in memory, interleaved. A library that takes floats only gets them as floats.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/audio/rate_converters.h"

namespace {

constexpr std::size_t kBlockFrames = 4096;

struct Request {
    const RateConverterKind* kind = nullptr;
    Rates rates{0, 0, 1};
    bool isList = false;
};

// False when the words are no request.
bool Parse(int count, char** words, Request& request) {
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--list") {
            request.isList = true;
            return true;
        }
        if (++i == count) return false;
        const auto number = static_cast<unsigned>(std::strtoul(words[i], nullptr, 10));
        if (word == "--with") {
            request.kind = FindRateConverter(words[i]);
        } else if (word == "--from") {
            request.rates.from = number;
        } else if (word == "--to") {
            request.rates.to = number;
        } else if (word == "--channels") {
            request.rates.channels = number;
        } else {
            return false;
        }
    }
    return request.kind && request.rates.from > 0 && request.rates.to > 0 && request.rates.channels > 0;
}

std::vector<double> ReadAll() {
    std::vector<double> samples;
    double piece[4096];
    while (const std::size_t got = std::fread(piece, sizeof(double), std::size(piece), stdin))
        samples.insert(samples.end(), piece, piece + got);
    return samples;
}

}  // namespace

int main(int argc, char** argv) {
    Request request;
    if (!Parse(argc, argv, request)) {
        std::fprintf(stderr,
                     "usage: qv_resample_raw --with NAME --from RATE --to RATE [--channels N] <IN >OUT\n");
        return 2;
    }
    if (request.isList) {
        for (const RateConverterKind& kind : RateConverters())
            std::printf("%s\t%s\n", kind.name, kind.configuration);
        return 0;
    }
    const std::vector<double> result = ConvertWhole(*request.kind, request.rates, ReadAll(), kBlockFrames);
    const bool isWritten = std::fwrite(result.data(), sizeof(double), result.size(), stdout) == result.size();
    return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
}
