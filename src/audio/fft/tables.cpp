// The tables are made once per length, so they are made for accuracy: each entry of the longest table by itself,
// the shorter ones copied from it. fft.h tells what they hold.
#include "audio/fft/fft.h"
#include "audio/fft/sine.h"

namespace {

constexpr double kEighthTurn = 0.78539816339744830962;  // pi/4

// The longest table: h entries of a step delta.
void MakeFirst(double* table, std::size_t h) {
    const double delta = kEighthTurn / static_cast<double>(h);
    table[0] = 1.0;
    table[1] = Cosine(delta * static_cast<double>(h));
    if (h >= 4) {
        table[2] = 0.5 / Cosine(delta * 2);
        table[3] = 0.5 / Cosine(delta * 6);
    }
    for (std::size_t j = 4; j < h; j += 4) {
        const double angle = delta * static_cast<double>(j);
        const double thrice = 3 * delta * static_cast<double>(j);
        table[j] = Cosine(angle);
        table[j + 1] = Sine(angle);
        table[j + 2] = Cosine(thrice);
        table[j + 3] = Sine(thrice);
    }
}

// The next: h entries of twice the step.
void MakeNext(double* table, std::size_t h, const double* longer) {
    table[0] = 1.0;
    table[1] = longer[1];
    if (h >= 4) {
        table[2] = 0.5 / longer[4];
        table[3] = 0.5 / longer[6];
    }
    for (std::size_t j = 4; j < h; j += 4)
        for (std::size_t entry = 0; entry < 4; ++entry) table[j + entry] = longer[2 * j + entry];
}

}  // namespace

void MakeTwiddles(std::size_t nw, std::int32_t* fftIndex, double* twiddles) {
    fftIndex[0] = static_cast<std::int32_t>(nw);
    fftIndex[1] = 1;
    if (nw <= 2) return;
    std::size_t h = nw >> 1;
    MakeFirst(twiddles, h);
    while (h > 2) {
        const double* longer = twiddles;
        twiddles += h;
        h >>= 1;
        MakeNext(twiddles, h, longer);
    }
}

void MakeCosTable(std::size_t nc, std::int32_t* fftIndex, double* cosines) {
    fftIndex[1] = static_cast<std::int32_t>(nc);
    if (nc <= 1) return;
    const std::size_t h = nc >> 1;
    const double delta = kEighthTurn / static_cast<double>(h);
    cosines[0] = Cosine(delta * static_cast<double>(h));
    cosines[h] = 0.5 * cosines[0];
    for (std::size_t j = 1; j < h; ++j) {
        cosines[j] = 0.5 * Cosine(delta * static_cast<double>(j));
        cosines[nc - j] = 0.5 * Sine(delta * static_cast<double>(j));
    }
}
