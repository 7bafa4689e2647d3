// Which sums a pair of counts has, and that samples of every depth are mixed by them.
#include <algorithm>
#include <sstream>
#include <string>

#include "audio/built_mixer.h"
#include "audio/format_records.h"
#include "audio/sample_twins.h"
#include "support/instruction_sets.h"

namespace {

using twin::Bytes;

struct PairRow {
    std::uint32_t from, to;
    const char* outputs;  // a is the square root of a half, b 0.44, c is b times the square root of two
};
const PairRow kPairs[] = {
    {1, 2, "L: 1 Ctr; R: 1 Ctr"},
    {1, 3, "L: 1 Ctr; R: 1 Ctr; Sub: 1 Ctr"},
    {1, 4, "L: 1 Ctr; R: 1 Ctr; BL: 1 Ctr; BR: 1 Ctr"},
    {1, 5, "L: 1 Ctr; R: 1 Ctr; Ctr: 1 Ctr; BL: 1 Ctr; BR: 1 Ctr"},
    {1, 6, "L: 1 Ctr; R: 1 Ctr; Ctr: 1 Ctr; Sub: 1 Ctr; BL: 1 Ctr; BR: 1 Ctr"},
    {1, 7, "L: 1 Ctr; R: 1 Ctr; Ctr: 1 Ctr; Sub: 1 Ctr; BL: 1 Ctr; BR: 1 Ctr; SL: 1 Ctr"},
    {1, 8, "L: 1 Ctr; R: 1 Ctr; Ctr: 1 Ctr; Sub: 1 Ctr; BL: 1 Ctr; BR: 1 Ctr; SL: 1 Ctr; SR: 1 Ctr"},
    {2, 1, "Ctr: c L + c R"},
    {2, 3, "L: 1 L; R: 1 R; Sub: 0.5 L + 0.5 R"},
    {2, 4, "L: 1 L; R: 1 R; BL: a L; BR: a R"},
    {2, 5, "L: 1 L; R: 1 R; Ctr: 0.5 L + 0.5 R; BL: a L; BR: a R"},
    {2, 6, "L: 1 L; R: 1 R; Ctr: 0.5 L + 0.5 R; Sub: 0.5 L + 0.5 R; BL: a L; BR: a R"},
    {2, 7, "L: 1 L; R: 1 R; Ctr: 0.5 L + 0.5 R; Sub: 0.5 L + 0.5 R; BL: a L; BR: a R; SL: a L"},
    {2, 8, "L: 1 L; R: 1 R; Ctr: 0.5 L + 0.5 R; Sub: 0.5 L + 0.5 R; BL: a L; BR: a R; SL: a L; SR: a R"},
    {3, 1, "Ctr: c L + c R + b Sub"},
    {3, 2, "L: a L + b Sub; R: a R + b Sub"},
    {3, 4, "L: a L + b Sub; R: a R + b Sub; BL: a L; BR: a R"},
    {3, 5, "L: a L + b Sub; R: a R + b Sub; Ctr: b L + b R + b Sub; BL: a L; BR: a R"},
    {3, 6, "L: 1 L; R: 1 R; Ctr: b L + b R + b Sub; Sub: 1 Sub; BL: a L; BR: a R"},
    {3, 7, "L: 1 L; R: 1 R; Ctr: b L + b R + b Sub; Sub: 1 Sub; BL: a L; BR: a R; SL: a L"},
    {3, 8, "L: 1 L; R: 1 R; Ctr: b L + b R + b Sub; Sub: 1 Sub; BL: a L; BR: a R; SL: a L; SR: a R"},
    {4, 1, "Ctr: c L + c R + -b BL + -b BR"},
    {4, 2, "L: a L + b BL; R: a R + b BR"},
    {4, 3, "L: a L + b BL; R: a R + b BR; Sub: b L + b R + b BL + b BR"},
    {4, 5, "L: 1 L; R: 1 R; Ctr: b L + b R + b BL + b BR; BL: 1 BL; BR: 1 BR"},
    {4, 6, "L: 1 L; R: 1 R; Ctr: b L + b R + b BL + b BR; Sub: b L + b R + b BL + b BR; BL: 1 BL; BR: 1 BR"},
    {4, 7,
     "L: 1 L; R: 1 R; Ctr: b L + b R + b BL + b BR; Sub: b L + b R + b BL + b BR; BL: 1 BL; BR: 1 BR; SL: a "
     "L"},
    {4, 8,
     "L: 1 L; R: 1 R; Ctr: b L + b R + b BL + b BR; Sub: b L + b R + b BL + b BR; BL: 1 BL; BR: 1 BR; SL: a "
     "L; SR: a R"},
    {5, 1, "Ctr: c L + c R + b Ctr + -b BL + -b BR"},
    {5, 2, "L: a L + b Ctr + b BL; R: a R + b Ctr + b BR"},
    {5, 3, "L: a L + b Ctr + b BL; R: a R + b Ctr + b BR; Sub: b Ctr"},
    {5, 4, "L: a L + b Ctr; R: a R + b Ctr; BL: b Ctr + a BL; BR: b Ctr + a BR"},
    {5, 6, "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: b L + b R + b Ctr + b BL + b BR; BL: 1 BL; BR: 1 BR"},
    {5, 7, "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: b L + b R + b Ctr + b BL + b BR; BL: 1 BL; BR: 1 BR; SL: a L"},
    {5, 8,
     "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: b L + b R + b Ctr + b BL + b BR; BL: 1 BL; BR: 1 BR; SL: a L; SR: a "
     "R"},
    {6, 1, "Ctr: c L + c R + b Ctr + b Sub + -b BL + -b BR"},
    {6, 2, "L: a L + b Ctr + b Sub + -b BL; R: a R + b Ctr + b Sub + -b BR"},
    {6, 3, "L: a L + b Ctr + b BL; R: a R + b Ctr + b BR; Sub: 1 Sub"},
    {6, 4,
     "L: a L + b Ctr + b Sub; R: a R + b Ctr + b Sub; BL: b Ctr + b Sub + a BL; BR: b Ctr + b Sub + a BR"},
    {6, 5, "L: a L + b Sub; R: a R + b Sub; Ctr: 1 Ctr; BL: b Sub + a BL; BR: b Sub + a BR"},
    {6, 7, "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: 1 Sub; BL: 1 BL; BR: 1 BR; SL: a L"},
    {6, 8, "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: 1 Sub; BL: 1 BL; BR: 1 BR; SL: a L; SR: a R"},
    {7, 1, "Ctr: c L + c R + b Ctr + b Sub + -b BL + -b BR + -b SL"},
    {7, 2, "L: a L + b Ctr + b Sub + -b BL + -b SL; R: a R + b Ctr + b Sub + -b BR"},
    {7, 3, "L: a L + b Ctr + -b BL + -b SL; R: a R + b Ctr + b BR; Sub: 1 Sub"},
    {7, 4,
     "L: a L + b Ctr + b Sub + -b SL; R: a R + b Ctr + b Sub; BL: b Ctr + b Sub + a BL + -b SL; BR: b Ctr + "
     "b Sub + a BR"},
    {7, 5, "L: a L + b Sub + b SL; R: a R + b Sub; Ctr: 1 Ctr; BL: b Sub + a BL + b SL; BR: b Sub + a BR"},
    {7, 6, "L: a L + b SL; R: a R; Ctr: 1 Ctr; Sub: 1 Sub; BL: a BL + b SL; BR: a BR"},
    {7, 8, "L: 1 L; R: 1 R; Ctr: 1 Ctr; Sub: 1 Sub; BL: 1 BL; BR: 1 BR; SL: 1 SL; SR: a R"},
    {8, 1, "Ctr: c L + c R + b Ctr + b Sub + -b BL + -b BR + -b SL + -b SR"},
    {8, 2, "L: a L + b Ctr + b Sub + -b BL + -b SL; R: a R + b Ctr + b Sub + -b BR + -b SR"},
    {8, 3, "L: a L + b Ctr + -b BL + -b SL; R: a R + b Ctr + -b BR + -b SR; Sub: 1 Sub"},
    {8, 4,
     "L: a L + b Ctr + b Sub + -b SL; R: a R + b Ctr + b Sub + -b SR; BL: b Ctr + b Sub + a BL + -b SL; BR: "
     "b Ctr + b Sub + a BR + -b SR"},
    {8, 5,
     "L: a L + b Sub + b SL; R: a R + b Sub + b SR; Ctr: 1 Ctr; BL: b Sub + a BL + b SL; BR: b Sub + a BR + "
     "b SR"},
    {8, 6, "L: a L + b SL; R: a R + b SR; Ctr: 1 Ctr; Sub: 1 Sub; BL: a BL + b SL; BR: a BR + b SR"},
    {8, 7, "L: a L; R: a R + b SR; Ctr: 1 Ctr; Sub: 1 Sub; BL: a BL; BR: a BR + b SR; SL: a SL"},
};

const char* const kShortNames[] = {"L", "R", "Ctr", "Sub", "BL", "BR", "SL", "SR"};

std::uint32_t SpeakerOf(const std::string& name) {
    return static_cast<std::uint32_t>(std::ranges::find(kShortNames, name) - std::begin(kShortNames)) + 1;
}

double CoefficientOf(const std::string& text) {
    const double sign = text[0] == '-' ? -1.0 : 1.0;
    const std::string name = text.substr(text[0] == '-' ? 1 : 0);
    if (name == "a") return sign * 0.7071067811865476;
    if (name == "b") return sign * 0.44;
    if (name == "c") return sign * 0.6222539674441618;
    return sign * std::stod(name);
}

// One output of a row of the table, "R: 1 L + -b BR", as terms behind the speaker they make.
struct Output {
    std::string speaker;
    std::vector<clMixTerm> terms;
};
Output Parsed(const std::string& text, std::uint32_t from) {
    std::istringstream words(text);
    Output output;
    std::string coefficient, speaker, plus;
    words >> output.speaker;
    output.speaker.pop_back();
    while (words >> coefficient >> speaker) {
        output.terms.push_back(
            {clChannelMixer::PositionOf(SpeakerOf(speaker), from), CoefficientOf(coefficient)});
        words >> plus;
    }
    return output;
}
std::vector<Output> Outputs(const PairRow& pair) {
    std::istringstream texts(pair.outputs);
    std::vector<Output> outputs;
    for (std::string text; std::getline(texts, text, ';');) outputs.push_back(Parsed(text, pair.from));
    return outputs;
}

void ExpectTerms(const clMixTerms& row, const std::vector<clMixTerm>& terms) {
    for (std::size_t i = 0; i < terms.size(); ++i) {
        EXPECT_EQ(row[i].position, terms[i].position) << "term " << i;
        EXPECT_EQ(row[i].coefficient, terms[i].coefficient) << "term " << i;
    }
    if (terms.size() == kMixChannels) return;
    EXPECT_EQ(row[terms.size()].position, 0u) << "the end of the row";
}

TEST(ChannelMixerSums, Every_pair_of_counts_has_its_sums) {
    const auto mixer = BuiltMixer();
    ASSERT_EQ(std::size(kPairs), 56u);
    for (const PairRow& pair : kPairs) {
        mixer->SelectPair(pair.from, pair.to);
        EXPECT_EQ(mixer->fromChannels, pair.from);
        EXPECT_EQ(mixer->toChannels, pair.to);
        const std::vector<Output> outputs = Outputs(pair);
        ASSERT_EQ(outputs.size(), pair.to);
        for (std::uint32_t i = 0; i < pair.to; ++i) {
            SCOPED_TRACE(testing::Message() << pair.from << " to " << pair.to << ", " << outputs[i].speaker);
            EXPECT_EQ(clChannelMixer::PositionOf(SpeakerOf(outputs[i].speaker), pair.to), i + 1);
            ExpectTerms(mixer->selected[i], outputs[i].terms);
        }
    }
}

TEST(ChannelMixerSums, The_table_stands_by_pairs_and_is_empty_where_speakers_are_absent) {
    const auto mixer = BuiltMixer();
    for (std::uint32_t i = 0; i < 64; ++i) {
        const clMixEntry& entry = mixer->entries[i];
        EXPECT_EQ(entry.from, i / 8 + 1);
        EXPECT_EQ(entry.to, i % 8 + 1);
        for (std::uint32_t source = 1; source <= 8; ++source) {
            const clMixRow& row = entry.rows[source - 1];
            const bool used = entry.from != entry.to;
            EXPECT_EQ(row.position, used ? clChannelMixer::PositionOf(source, entry.from) : 0);
            for (std::uint32_t target = 1; target <= 8; ++target) {
                const clMixColumn& column = row.columns[target - 1];
                const bool present = used && row.position != 0;
                EXPECT_EQ(column.position, present ? clChannelMixer::PositionOf(target, entry.to) : 0);
                if (column.position == 0) {
                    EXPECT_EQ(column.coefficient, 0.0);
                }
            }
        }
    }
}

TEST(ChannelMixerSums, Layouts_and_speakers_have_names) {
    const struct {
        std::uint32_t channels;
        const char* layout;
        const char* speaker;  // the last channel's
    } rows[] = {
        {1, "Mono", "Center"},         {2, "Stereo", "Right"},
        {3, "2.1", "Sub-woofer"},      {4, "Quadraphonic", "Back Right"},
        {5, "Surround", "Back Right"}, {6, "5.1 Surround", "Back Right"},
        {7, "7 Channel", "Side Left"}, {8, "7.1 Theater", "Side Right"},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(clChannelMixer::kLayoutNames[row.channels - 1], row.layout);
        std::uint32_t speaker = 1;
        while (clChannelMixer::PositionOf(speaker, row.channels) != row.channels) ++speaker;
        EXPECT_STREQ(clChannelMixer::kSpeakerNames[speaker - 1], row.speaker);
    }
    EXPECT_STREQ(clChannelMixer::kSpeakerNames[0], "Left");
    EXPECT_STREQ(clChannelMixer::kSpeakerNames[4], "Back Left");
}

TEST(ChannelMixerSums, The_rule_before_sums_are_evened_out) {
    constexpr double a = 0.7071067811865476;
    const struct {
        std::uint32_t from, to, source, target;
        double coefficient;
    } rows[] = {
        {1, 8, 3, 8, 1.0},   {2, 6, 1, 3, 0.5},   {2, 6, 1, 5, a},
        {2, 6, 2, 5, 0.0},   {2, 6, 1, 6, 0.0},   {3, 5, 3, 1, 0.0},
        {3, 5, 1, 1, 1.0},   {4, 6, 3, 4, 0.44},  {6, 2, 4, 1, 0.44},
        {6, 2, 5, 1, -0.44}, {6, 2, 5, 2, 0.0},   {8, 2, 7, 1, -0.44},
        {5, 3, 3, 4, 0.44},  {6, 3, 1, 4, 0.0},   {6, 3, 4, 4, 1.0},
        {8, 7, 8, 6, -0.44}, {7, 5, 7, 5, -0.44}, {7, 5, 7, 3, 0.0},
        {6, 5, 3, 3, 1.0},   {6, 5, 4, 3, 0.0},   {2, 1, 1, 3, 0.44 * 1.4142135623730951},
        {4, 1, 5, 3, -0.44}, {3, 1, 4, 3, 0.44},
    };
    for (const auto& row : rows)
        EXPECT_EQ(clChannelMixer::PairCoefficient(row.from, row.to, row.source, row.target), row.coefficient)
            << row.from << " to " << row.to << ", " << row.source << " in " << row.target;
}

TEST(ChannelMixerSums, A_count_outside_1_to_8_leaves_no_pair) {
    const auto mixer = BuiltMixer();
    for (const auto& [from, to] : {std::pair{0u, 2u}, {2u, 0u}, {9u, 2u}, {2u, 9u}}) {
        mixer->SelectPair(2, 6);
        mixer->SelectPair(from, to);
        EXPECT_EQ(mixer->fromChannels + mixer->toChannels, 0u);
    }
}

// The slow twin: a frame at a time, by the table's own text.
Bytes Mixed(const Bytes& samples, SampleKind kind, const PairRow& pair) {
    const std::vector<Output> outputs = Outputs(pair);
    const std::size_t width = BytesOf(kind), frames = samples.size() / width / pair.from;
    Bytes result(frames * pair.to * width);
    for (std::size_t frame = 0; frame < frames; ++frame)
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            double sum = 0;
            for (const clMixTerm& term : outputs[i].terms) {
                const std::size_t at = frame * pair.from + term.position - 1;
                const double product = twin::ReadOne(&samples[at * width], kind) * term.coefficient;
                sum += product;
            }
            twin::WriteOne(&result[(frame * pair.to + i) * width], sum, kind);
        }
    return result;
}

// Which NaN comes of two is left to the processor's order of operands.
Bytes WithOneNaN(Bytes samples, SampleKind kind) {
    if (!twin::IsFloat(kind)) return samples;
    for (std::size_t at = 0; at < samples.size(); at += BytesOf(kind))
        if (std::isnan(twin::StoredValue(&samples[at], kind)))
            twin::StoreFloat(&samples[at], std::numeric_limits<double>::quiet_NaN(), kind);
    return samples;
}

QvFormat Record(SampleKind kind, std::uint32_t channels) {
    return Plain(twin::IsFloat(kind) ? 3 : 1, static_cast<std::uint16_t>(channels), 44100,
                 twin::BitsOf(kind));
}

TEST(ChannelMixerSums, All_pairs_and_depths_are_bit_exact_in_every_instruction_set) {
    const auto mixer = BuiltMixer();
    for (const PairRow& pair : kPairs)
        for (const SampleKind kind : twin::kKinds)
            for (const std::size_t frames : {1u, 2u, 3u, 7u, 9u, 127u, 129u, 300u}) {
                Bytes samples = twin::Samples(kind, frames * pair.from, static_cast<std::uint32_t>(frames));
                const Bytes expected = WithOneNaN(Mixed(samples, kind, pair), kind);
                samples.insert(samples.begin(), 0x5A);
                samples.shrink_to_fit();
                for (const InstructionSet set : OfferedSets()) {
                    const ForcedSet forced(set);
                    const QvFormat format = Record(kind, pair.from);
                    clAudioBlock in;
                    in.setData(samples.data() + 1, static_cast<std::uint32_t>(samples.size() - 1), &format,
                               true);
                    ASSERT_TRUE(mixer->Mix(in, pair.to));
                    const Bytes result(mixer->output.data, mixer->output.data + mixer->output.bytes);
                    ASSERT_EQ(WithOneNaN(result, kind), expected)
                        << pair.from << " to " << pair.to << ", " << twin::NameOf(kind) << ", " << frames
                        << " frames, " << NameOf(set);
                }
            }
}

TEST(ChannelMixerSums, What_all_pairs_give_has_one_digest) {
    const auto mixer = BuiltMixer();
    for (const InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        std::uint64_t digest = 0;
        for (const PairRow& pair : kPairs)
            for (const SampleKind kind : twin::kKinds) {
                const Bytes samples = twin::Samples(kind, 500 * pair.from, pair.to);
                const QvFormat format = Record(kind, pair.from);
                clAudioBlock in;
                in.setData(samples.data(), static_cast<std::uint32_t>(samples.size()), &format, true);
                ASSERT_TRUE(mixer->Mix(in, pair.to));
                const Bytes result(mixer->output.data, mixer->output.data + mixer->output.bytes);
                digest = twin::Digest(WithOneNaN(result, kind), digest);
            }
        EXPECT_EQ(digest, 5930667967198859456u) << NameOf(set);
    }
}

}  // namespace
