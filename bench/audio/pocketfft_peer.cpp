// pocketfft's C++ header as Debian ships it with pythran, the same code as in scipy. Its plans are cached by length.
#define POCKETFFT_NO_MULTITHREADING
#include <pythran/pythonic/numpy/fft/pocketfft.hpp>

#include "bench/audio/transform_peers.h"

namespace {

class Pocketfft : public RoundTrip {
  public:
    explicit Pocketfft(std::size_t n) : RoundTrip(n), shape_{n}, spectrum_(n / 2 + 1) {}

    void Run() override {
        pocketfft::r2c(shape_, kReals, kComplexes, kAxis, pocketfft::FORWARD, in.data(), spectrum_.data(),
                       1.0);
        pocketfft::c2r(shape_, kComplexes, kReals, kAxis, pocketfft::BACKWARD, spectrum_.data(), out.data(),
                       1.0);
    }

  private:
    static inline const pocketfft::stride_t kReals = {sizeof(double)};
    static inline const pocketfft::stride_t kComplexes = {sizeof(std::complex<double>)};
    static constexpr std::size_t kAxis = 0;

    pocketfft::shape_t shape_;
    std::vector<std::complex<double>> spectrum_;
};

}  // namespace

std::unique_ptr<RoundTrip> MakePocketfft(std::size_t n) {
    return std::make_unique<Pocketfft>(n);
}
