// The real transform, forward and inverse, of one block that lies in the cache.
//
// No library scales, so what is transformed in place grows by n with each round trip. Ours and one of FFTW's plans work
// in place: they get their input anew every few trips, before it leaves the range of a double, which costs next to
// nothing.
#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>
#include <random>

#include "audio/fft/fft.h"
#include "bench/audio/groups.h"
#include "bench/audio/transform_peers.h"

namespace {

constexpr int kTripsPerInput = 32;

// Doubles that begin at a multiple of 64 bytes, as the resampler's do and as FFTW aligns its own.
class AlignedArray {
  public:
    explicit AlignedArray(std::size_t count)
        : data(static_cast<double*>(::operator new(count * sizeof(double), kAlignment))) {
        std::fill_n(data, count, 0.0);
    }
    AlignedArray(const AlignedArray&) = delete;
    AlignedArray& operator=(const AlignedArray&) = delete;
    ~AlignedArray() { ::operator delete(data, kAlignment); }
    double* const data;

  private:
    static constexpr std::align_val_t kAlignment{64};
};

// What transforms in place share: an array that is the input again every few trips. `out` gets the first result, for
// the check.
class InPlace : public RoundTrip {
  public:
    InPlace(std::size_t n, double* array) : RoundTrip(n), array_(array) {}
    void Run() override {
        if (trips_ % kTripsPerInput == 0) std::copy(in.begin(), in.end(), array_);
        Trip();
        if (trips_++ == 0) std::copy_n(array_, out.size(), out.begin());
    }

  protected:
    virtual void Trip() = 0;

  private:
    double* const array_;
    int trips_ = 0;
};

// An array that exists before the one base class that is told of it.
struct OwnArray {
    explicit OwnArray(std::size_t count) : array(count) {}
    AlignedArray array;
};

class Ours : OwnArray, public InPlace {
  public:
    explicit Ours(std::size_t n)
        : OwnArray(n),
          InPlace(n, array.data),
          index_(static_cast<std::size_t>(std::sqrt(static_cast<double>(n)) + 2)),
          table_(n / 2) {}

    // The spectrum of `in`, by itself.
    std::vector<double> Spectrum() {
        AlignedArray spectrum(in.size());
        std::copy(in.begin(), in.end(), spectrum.data);
        RealFft(in.size(), FftDirection::Forward, spectrum.data, index_.data(), table_.data);
        return {spectrum.data, spectrum.data + in.size()};
    }

  private:
    void Trip() override {
        RealFft(out.size(), FftDirection::Forward, array.data, index_.data(), table_.data);
        RealFft(out.size(), FftDirection::Inverse, array.data, index_.data(), table_.data);
    }

    std::vector<std::int32_t> index_;
    AlignedArray table_;
};

// FFTW's arrays and its two plans between them; forward and back are one array for the transform in place.
class FftwPlans {
  public:
    FftwPlans(std::size_t n, unsigned planning, double* reals, fftw_complex* spectrum, double* result)
        : forward_(fftw_plan_dft_r2c_1d(static_cast<int>(n), reals, spectrum, planning)),
          inverse_(fftw_plan_dft_c2r_1d(static_cast<int>(n), spectrum, result, planning)) {}
    FftwPlans(const FftwPlans&) = delete;
    FftwPlans& operator=(const FftwPlans&) = delete;
    ~FftwPlans() {
        fftw_destroy_plan(forward_);
        fftw_destroy_plan(inverse_);
    }
    void Execute() const {
        fftw_execute(forward_);
        fftw_execute(inverse_);
    }

  private:
    fftw_plan forward_;
    fftw_plan inverse_;
};

class Fftw : public RoundTrip {
  public:
    Fftw(std::size_t n, unsigned planning)
        : RoundTrip(n),
          reals_(n),
          spectrum_(n + 2),
          result_(n),
          plans_(n, planning, reals_.data, reinterpret_cast<fftw_complex*>(spectrum_.data), result_.data) {}

    void Run() override {
        if (!isFilled_) std::copy(in.begin(), in.end(), reals_.data);
        plans_.Execute();
        if (!isFilled_) std::copy_n(result_.data, out.size(), out.begin());
        isFilled_ = true;
    }

  private:
    AlignedArray reals_, spectrum_, result_;
    bool isFilled_ = false;
    FftwPlans plans_;
};

class FftwInPlace : OwnArray, public InPlace {
  public:
    FftwInPlace(std::size_t n, unsigned planning)
        : OwnArray(n + 2),
          InPlace(n, array.data),
          plans_(n, planning, array.data, reinterpret_cast<fftw_complex*>(array.data), array.data) {}

  private:
    void Trip() override { plans_.Execute(); }
    FftwPlans plans_;
};

// The input comes back `scale` times as large.
std::string Check(const std::string& name, const RoundTrip& trip, double scale) {
    double worst = 0;
    for (std::size_t i = 0; i < trip.in.size(); ++i)
        worst = std::max(worst, std::abs(trip.out[i] / scale - trip.in[i]));
    return worst < 1e-13 ? "" : name + " doesn't give the input back; off by " + std::to_string(worst);
}

// A few values of the spectrum, summed up by their definition.
std::string CheckSpectrum(const std::vector<double>& in, const std::vector<double>& spectrum) {
    const std::size_t n = in.size();
    for (const std::size_t k : {std::size_t{1}, std::size_t{7}, n / 4 + 1, n / 2 - 1}) {
        double re = 0, im = 0;
        for (std::size_t j = 0; j < n; ++j) {
            const double angle =
                2 * std::numbers::pi * static_cast<double>(j * k % n) / static_cast<double>(n);
            re += in[j] * std::cos(angle);
            im += in[j] * std::sin(angle);
        }
        const double off = std::hypot(spectrum[2 * k] - re, spectrum[2 * k + 1] - im);
        if (!(off < 1e-10)) return "ours has another spectrum, off by " + std::to_string(off);
    }
    return "";
}

struct Entrant {
    const char* name;
    std::unique_ptr<RoundTrip> trip;
    double scale;
};

void RaceLength(Racecourse& course, std::size_t n) {
    const auto whole = static_cast<double>(n);
    const unsigned planning = course.IsShort() ? FFTW_ESTIMATE : FFTW_MEASURE;
    auto made = std::make_unique<Ours>(n);
    Ours& ours = *made;
    Entrant entrants[] = {{"ours", std::move(made), whole / 2},
                          {"FFTW", std::make_unique<Fftw>(n, planning), whole},
                          {"FFTW in place", std::make_unique<FftwInPlace>(n, planning), whole},
                          {"pocketfft", MakePocketfft(n), whole},
                          {"kissfft", MakeKissfft(n), whole}};
    std::mt19937_64 random(n);
    std::uniform_real_distribution<double> values(-1, 1);
    for (double& value : entrants[0].trip->in) value = values(random);

    Race race;
    race.work = "n = " + std::to_string(n);
    for (Entrant& entrant : entrants) {
        entrant.trip->in = entrants[0].trip->in;
        race.contestants.push_back({entrant.name, [trip = entrant.trip.get()] { trip->Run(); }});
    }
    race.demands = {
        {"FFTW", 0.7, 1.0}, {"FFTW in place", 0.7, 1.0}, {"pocketfft", 1.0, 0}, {"kissfft", 1.0, 0}};
    race.check = [&] {
        std::string wrong = CheckSpectrum(ours.in, ours.Spectrum());
        for (const Entrant& entrant : entrants)
            if (wrong.empty()) wrong = Check(entrant.name, *entrant.trip, entrant.scale);
        return wrong;
    };
    course.Run(race);
}

}  // namespace

void RaceTransforms(Racecourse& course) {
    course.Announce("Transforms",
                    {"n doubles forward and inverse, as much as lies in the caches",
                     std::string(fftw_version) + (course.IsShort() ? ", ESTIMATE" : ", MEASURE") +
                         ", real to complex and back, out of place and in place",
                     "pocketfft r2c and c2r, plans cached", "kissfft's class template in double"});
    for (const std::size_t n : std::initializer_list<std::size_t>{1024, 4096, 32768, 65536})
        RaceLength(course, n);
}
