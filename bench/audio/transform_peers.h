// Forward and inverse transforms of n doubles by other libraries, each in the form that its own users would choose:
// plans and tables made beforehand, no copy that the library doesn't need.
//
// FFTW is called directly. The two here are templates in headers, compiled in sources of their own.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

// One length. `Run` brings `in` into the frequency domain and back, unscaled: `out` is then n times `in`.
class RoundTrip {
  public:
    explicit RoundTrip(std::size_t n) : in(n), out(n) {}
    RoundTrip(const RoundTrip&) = delete;
    RoundTrip& operator=(const RoundTrip&) = delete;
    virtual ~RoundTrip() = default;
    virtual void Run() = 0;

    std::vector<double> in;
    std::vector<double> out;
};

std::unique_ptr<RoundTrip> MakePocketfft(std::size_t n);
std::unique_ptr<RoundTrip> MakeKissfft(std::size_t n);
