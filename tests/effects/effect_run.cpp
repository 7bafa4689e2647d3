#include "effects/effect_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "foundation/qv_text.h"
#include "support/codec/codec_modules.h"

QvFormatExtensible SampleFormat(std::uint16_t bits, bool isFloat, std::uint16_t channels, std::uint32_t rate,
                                std::uint16_t validBits) {
    const std::uint16_t type = isFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    const auto align = static_cast<std::uint16_t>(bits / 8 * channels);
    QvFormatExtensible format{};
    format.Format = {type, channels, rate, rate * align, align, bits, 0};
    if (validBits == 0) return format;
    format.Format.wFormatTag = QV_FORMAT_EXTENSIBLE;
    format.Format.cbSize = 22;
    format.wValidBitsPerSample = validBits;
    format.SubFormat[0] = static_cast<std::uint8_t>(type);
    return format;
}

std::string Noise(const QvFormatExtensible& format, std::size_t frames) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> uniform(-1, 1);
    const std::uint16_t bits = format.Format.wBitsPerSample;
    const bool isFloat = format.Format.wFormatTag == QV_FORMAT_FLOAT;
    std::string audio;
    while (audio.size() < frames * format.Format.nBlockAlign) {
        const double large = uniform(random);
        const float small = static_cast<float>(large);
        const std::uint32_t whole = static_cast<std::uint32_t>(random());
        const void* sample = !isFloat     ? static_cast<const void*>(&whole)
                             : bits == 64 ? static_cast<const void*>(&large)
                                          : static_cast<const void*>(&small);
        audio.append(static_cast<const char*>(sample), bits / 8u);
    }
    return audio;
}

namespace {

std::string FloatTwin(const std::string& sample, double factor) {
    std::string changed(sample.size(), '\0');
    if (sample.size() == 8) {
        double value;
        std::memcpy(&value, sample.data(), 8);
        value *= factor;
        std::memcpy(changed.data(), &value, 8);
    } else {
        float value;
        std::memcpy(&value, sample.data(), 4);
        value = static_cast<float>(value * factor);
        std::memcpy(changed.data(), &value, 4);
    }
    return changed;
}

std::string IntegerTwin(const std::string& sample, double factor, std::uint32_t validBits) {
    const auto bits = static_cast<std::uint32_t>(sample.size() * 8);
    std::int64_t value = 0;
    for (std::size_t i = 0; i < sample.size(); ++i)
        value += std::int64_t{static_cast<std::uint8_t>(sample[i])} << (8 * i);
    if (bits == 8) value -= 128;
    if (bits > 8 && value >= std::int64_t{1} << (bits - 1)) value -= std::int64_t{1} << bits;
    const std::int64_t step = std::int64_t{1} << (bits - validBits);
    const std::int64_t most = (std::int64_t{1} << (bits - 1)) - step;
    const std::int64_t least = -(std::int64_t{1} << (bits - 1));
    if (factor != 1) {
        const double steps = static_cast<double>(value) * factor / static_cast<double>(step);
        value = std::clamp(static_cast<std::int64_t>(std::llround(steps)) * step, least, most);
    }
    if (bits == 8) value += 128;
    std::string changed;
    for (std::size_t i = 0; i < sample.size(); ++i) changed += static_cast<char>(value >> (8 * i));
    return changed;
}

}  // namespace

std::string Twin(const QvFormatExtensible& format, std::string_view audio, FactorOf factor) {
    const std::size_t step = format.Format.wBitsPerSample / 8u;
    const std::size_t frames = audio.size() / format.Format.nBlockAlign;
    const bool isExtensible = format.Format.wFormatTag == QV_FORMAT_EXTENSIBLE;
    const std::uint32_t validBits = isExtensible ? format.wValidBitsPerSample : format.Format.wBitsPerSample;
    std::string changed;
    for (std::size_t at = 0; at < audio.size(); at += step) {
        const std::size_t frame = at / format.Format.nBlockAlign;
        const double by = factor(frame, frames - 1 - frame);
        const std::string sample(audio.substr(at, step));
        changed += format.Format.wFormatTag == QV_FORMAT_FLOAT ? FloatTwin(sample, by)
                                                               : IntegerTwin(sample, by, validBits);
    }
    return changed;
}

EffectModule::EffectModule(std::u16string_view name) {
    EXPECT_TRUE(mEffect.Load(TreeModule(u"DSPs", name).c_str()));
    EXPECT_TRUE(mEffect.Create(mLog.Log()));
}

bool EffectModule::Begin(const char16_t* settings, const QvFormatExtensible& format) {
    mSession = {};
    mSession.settings = ToQvText(settings);
    mSession.lengthMs = 12345;
    std::memcpy(mSession.format, &format, sizeof mSession.format);
    return mEffect.BeginConversion(&mSession);
}

bool EffectModule::Pass(std::string_view in, bool isLast, std::string& audio, bool* finished) {
    clBlockRec block{}, out{};
    block.data = reinterpret_cast<const std::uint8_t*>(in.data());
    block.bytes = static_cast<std::uint32_t>(in.size());
    block.finished = isLast;
    if (!mEffect.PassAudioBlock(&block, &out)) return false;
    if (out.bytes > 0) audio.append(reinterpret_cast<const char*>(out.data), out.bytes);
    *finished = out.finished != 0;
    return true;
}

EffectRun EffectModule::Run(const char16_t* settings, const QvFormatExtensible& format,
                            std::string_view audio, std::vector<std::size_t> pieces) {
    EffectRun run;
    run.began = run.good = Begin(settings, format);
    std::memcpy(&run.format, mSession.format, sizeof run.format);
    const std::size_t frameBytes = std::max<std::size_t>(format.Format.nBlockAlign, 1);
    bool finished = false;
    for (std::size_t piece = 0; run.good && !finished; piece += piece + 1 < pieces.size()) {
        const std::string_view in = audio.substr(0, pieces[piece] * frameBytes);
        audio.remove_prefix(in.size());
        run.good = Pass(in, audio.empty(), run.audio, &finished);
        run.tailBlocks += audio.empty();
        EXPECT_FALSE(finished && !audio.empty());
        if (run.tailBlocks > 100000) break;
    }
    if (run.began) run.good = End() && run.good;
    run.errors = mLog.TakeErrors();
    return run;
}
