// kissfft in double. Debian's library is the single-precision one; the header's class is a template that knows the real
// transform in the forward direction only. The pass before the inverse is that of the library's kiss_fftr.c, written for
// this class.
#include <kissfft/kissfft.hh>

#include "bench/audio/transform_peers.h"

namespace {

using Complex = std::complex<double>;

class Kissfft : public RoundTrip {
  public:
    explicit Kissfft(std::size_t n)
        : RoundTrip(n), forward_(n / 2, false), inverse_(n / 2, true), spectrum_(n / 2), twiddles_(n / 4) {
        for (std::size_t k = 0; k < twiddles_.size(); ++k)
            twiddles_[k] =
                std::polar(1.0, 2 * std::acos(-1.0) * static_cast<double>(k + 1) / static_cast<double>(n) +
                                    std::acos(0.0));
    }

    void Run() override {
        forward_.transform_real(in.data(), spectrum_.data());
        Fold();
        inverse_.transform(spectrum_.data(), reinterpret_cast<Complex*>(out.data()));
    }

  private:
    // From the spectrum of the reals to that of pairs of them taken as complex numbers, times two.
    void Fold() {
        const std::size_t half = spectrum_.size();
        spectrum_[0] = {spectrum_[0].real() + spectrum_[0].imag(), spectrum_[0].real() - spectrum_[0].imag()};
        for (std::size_t k = 1; k <= half / 2; ++k) {
            const Complex a = spectrum_[k];
            const Complex b = std::conj(spectrum_[half - k]);
            const Complex even = a + b;
            const Complex odd = (a - b) * twiddles_[k - 1];
            spectrum_[k] = even + odd;
            spectrum_[half - k] = std::conj(even - odd);
        }
    }

    kissfft<double> forward_;
    kissfft<double> inverse_;
    std::vector<Complex> spectrum_;
    std::vector<Complex> twiddles_;
};

}  // namespace

std::unique_ptr<RoundTrip> MakeKissfft(std::size_t n) {
    return std::make_unique<Kissfft>(n);
}
