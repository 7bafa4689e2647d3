// Our own effects in a conversion, from the host's list of them to the samples that come out.
#include <cmath>
#include <cstring>

#include "endtoend/conversion.h"
#include "endtoend/quaver_run.h"

namespace {

using Samples = std::vector<std::int16_t>;

// A file's last bytes, which are its audio.
Samples LastSamples(const std::string& file, std::size_t bytes) {
    Samples samples(bytes / sizeof(std::int16_t));
    EXPECT_GE(file.size(), bytes);
    if (file.size() >= bytes) std::memcpy(samples.data(), file.data() + file.size() - bytes, bytes);
    return samples;
}

void Multiply(std::int16_t& sample, double factor) {
    sample = static_cast<std::int16_t>(std::round(sample * factor));
}

constexpr std::size_t kFrames = 60000, kBytes = kFrames * 4;
constexpr std::size_t kFadeFrames = 22050;  // half a second of the recordings

void Quieten(Samples& samples) {
    for (std::int16_t& sample : samples) Multiply(sample, std::pow(10, -6.5 / 20));
}

void FadeOut(Samples& samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t behind = kFrames - 1 - i / 2;
        if (behind < kFadeFrames) Multiply(samples[i], static_cast<double>(behind) / kFadeFrames);
    }
}

class EffectsOfOurs : public QuaverRun {
  protected:
    Samples Converted(const std::vector<Order::Pair>& effects) {
        Host host(library);
        Order order{source, files / u"out.wav"};
        order.effects = effects;
        const Outcome outcome = host.Convert(order);
        EXPECT_TRUE(outcome.Succeeded()) << testing::PrintToString(outcome.errors);
        return LastSamples(files.Read(u"out.wav"), kBytes);
    }

    const std::u16string source = files.Write(u"in.wav", Recording(kBytes));
    const Order::Pair volume{u"Volume", u"-gain=-6.5"};
    const Order::Pair fade{u"Fade", u"-out=0.5"};
};

}  // namespace

TEST_F(EffectsOfOurs, Change_the_audio_in_the_order_of_the_hosts_list) {
    const Samples audio = LastSamples(files.Read(u"in.wav"), kBytes);
    Samples quieter = audio, faded = audio;
    Quieten(quieter);
    FadeOut(quieter);
    FadeOut(faded);
    Quieten(faded);
    ASSERT_NE(quieter, faded);  // by what is rounded first
    EXPECT_EQ(Converted({volume, fade}), quieter);
    EXPECT_EQ(Converted({fade, volume}), faded);
}

TEST_F(EffectsOfOurs, That_change_nothing_leave_every_byte) {
    Converted({{u"Volume", u""}, {u"Fade", u""}});
    EXPECT_TRUE(HaveSameAudio(source, files / u"out.wav"));
}

TEST_F(EffectsOfOurs, Refuse_settings_in_words) {
    ExpectNothingWritten({u"convert", u"--effect", u"Volume=-gain=loud", source, files / u"out.wav"}, kFailed,
                         "Volume: the setting -gain is \"loud\", but must be a number from -100 to 100");
    Expect(
        {u"convert", u"--effect", u"Volume=-gain=-3", u"--effect", u"Fade=-in=1", source, files / u"out.wav"},
        kDone);
}
