// Every peer writes into a buffer of its own that is wide enough for what a block can give, so that none is asked twice
// where once would do. At the end each is fed silence, or told, until what it still holds is out.
#include "bench/audio/rate_peers.h"

#include <samplerate.h>
#include <soxr.h>
#include <speex/speex_resampler.h>
#include <zita-resampler/resampler.h>

#include <algorithm>
#include <vector>

namespace {

// Where a block's frames go: room grows with the block, and the samples stay what they were.
template <typename Sample>
class Output {
  public:
    Output(const Rates& rates) : rates_(rates) {}

    void Begin(std::size_t inputFrames) {
        constexpr std::size_t kHeldBack = 65536;  // more than any of them holds
        const std::size_t room = inputFrames * rates_.to / rates_.from + kHeldBack;
        if (room > room_) samples_.resize(room * rates_.channels);
        room_ = std::max(room, room_);
        frames_ = 0;
    }
    Sample* At() { return samples_.data() + frames_ * rates_.channels; }
    std::size_t Room() const { return room_ - frames_; }
    void Advance(std::size_t frames) { frames_ += frames; }
    Converted Result() const { return {samples_.data(), frames_}; }

  private:
    const Rates rates_;
    std::vector<Sample> samples_;
    std::size_t room_ = 0;
    std::size_t frames_ = 0;
};

class Soxr : public RateConverter {
  public:
    Soxr(const Rates& rates, bool isSteep) : output_(rates) {
        const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
        soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
        if (isSteep) {
            quality.passband_end = 0.995;
            quality.stopband_begin = 1.0;
        }
        soxr_error_t error = nullptr;
        const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
        soxr_ = soxr_create(rates.from, rates.to, rates.channels, &error, &io, &quality, &oneThread);
        if (error) RefusedBy("soxr");
    }
    ~Soxr() override { soxr_delete(soxr_); }

    Converted Process(const void* samples, std::size_t frames, bool last) override {
        output_.Begin(frames);
        Step(samples, frames);
        while (last && Step(nullptr, 0) > 0) {
        }
        return output_.Result();
    }

  private:
    std::size_t Step(const void* samples, std::size_t frames) {
        std::size_t taken = 0, given = 0;
        if (soxr_process(soxr_, samples, frames, &taken, output_.At(), output_.Room(), &given) ||
            taken != frames)
            RefusedBy("soxr");
        output_.Advance(given);
        return given;
    }

    soxr_t soxr_;
    Output<double> output_;
};

class Samplerate : public RateConverter {
  public:
    explicit Samplerate(const Rates& rates)
        : ratio_(static_cast<double>(rates.to) / rates.from), channels_(rates.channels), output_(rates) {
        int error = 0;
        state_ = src_new(SRC_SINC_BEST_QUALITY, static_cast<int>(rates.channels), &error);
        if (!state_) RefusedBy("samplerate");
    }
    ~Samplerate() override { src_delete(state_); }

    Converted Process(const void* samples, std::size_t frames, bool last) override {
        output_.Begin(frames);
        SRC_DATA data{};
        data.data_in = static_cast<const float*>(samples);
        data.input_frames = static_cast<long>(frames);
        data.src_ratio = ratio_;
        data.end_of_input = last ? 1 : 0;
        do {
            data.data_out = output_.At();
            data.output_frames = static_cast<long>(output_.Room());
            if (src_process(state_, &data) != 0) RefusedBy("samplerate");
            output_.Advance(static_cast<std::size_t>(data.output_frames_gen));
            data.data_in += static_cast<std::size_t>(data.input_frames_used) * channels_;
            data.input_frames -= data.input_frames_used;
        } while (data.output_frames_gen > 0 && (data.input_frames > 0 || last));
        return output_.Result();
    }

  private:
    const double ratio_;
    const std::size_t channels_;
    SRC_STATE* state_;
    Output<float> output_;
};

class Zita : public RateConverter {
  public:
    explicit Zita(const Rates& rates) : output_(rates) {
        if (resampler_.setup(rates.from, rates.to, rates.channels, 96) != 0) RefusedBy("zita");
        Feed(nullptr, static_cast<std::size_t>(resampler_.inpsize()) / 2 - 1);  // so that it begins in time
    }

    Converted Process(const void* samples, std::size_t frames, bool last) override {
        output_.Begin(frames);
        Feed(static_cast<const float*>(samples), frames);
        if (last) Feed(nullptr, static_cast<std::size_t>(resampler_.inpsize()) / 2);
        return output_.Result();
    }

  private:
    // No samples are silence.
    void Feed(const float* samples, std::size_t frames) {
        if (output_.Room() == 0) output_.Begin(frames);
        resampler_.inp_data = const_cast<float*>(samples);
        resampler_.inp_count = static_cast<unsigned>(frames);
        resampler_.out_data = output_.At();
        const auto room = static_cast<unsigned>(output_.Room());
        resampler_.out_count = room;
        resampler_.process();
        if (resampler_.inp_count != 0) RefusedBy("zita");
        output_.Advance(room - resampler_.out_count);
    }

    Resampler resampler_;
    Output<float> output_;
};

class Speex : public RateConverter {
  public:
    explicit Speex(const Rates& rates) : channels_(rates.channels), output_(rates) {
        int error = 0;
        state_ =
            speex_resampler_init(rates.channels, rates.from, rates.to, SPEEX_RESAMPLER_QUALITY_MAX, &error);
        if (!state_) RefusedBy("speex");
        speex_resampler_skip_zeros(state_);
    }
    ~Speex() override { speex_resampler_destroy(state_); }

    Converted Process(const void* samples, std::size_t frames, bool last) override {
        output_.Begin(frames);
        Feed(static_cast<const float*>(samples), frames);
        if (last) {
            const auto held = static_cast<std::size_t>(speex_resampler_get_input_latency(state_));
            Feed(std::vector<float>(held * channels_).data(), held);
        }
        return output_.Result();
    }

  private:
    void Feed(const float* samples, std::size_t frames) {
        while (frames > 0) {
            auto taken = static_cast<spx_uint32_t>(frames);
            auto given = static_cast<spx_uint32_t>(output_.Room());
            if (speex_resampler_process_interleaved_float(state_, samples, &taken, output_.At(), &given) !=
                    0 ||
                taken + given == 0)
                RefusedBy("speex");
            output_.Advance(given);
            samples += taken * channels_;
            frames -= taken;
        }
    }

    const std::size_t channels_;
    SpeexResamplerState* state_;
    Output<float> output_;
};

}  // namespace

std::unique_ptr<RateConverter> MakeSoxrSteep(const Rates& rates) {
    return std::make_unique<Soxr>(rates, true);
}

std::unique_ptr<RateConverter> MakeSoxr(const Rates& rates) {
    return std::make_unique<Soxr>(rates, false);
}

std::unique_ptr<RateConverter> MakeSamplerate(const Rates& rates) {
    return std::make_unique<Samplerate>(rates);
}

std::unique_ptr<RateConverter> MakeZita(const Rates& rates) {
    return std::make_unique<Zita>(rates);
}

std::unique_ptr<RateConverter> MakeSpeex(const Rates& rates) {
    return std::make_unique<Speex>(rates);
}
