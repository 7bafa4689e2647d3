// Recordings of other people's, as packages install them, through every command of quaver. What is expected was found
// by other programs, so both targets are held against the same answers, and neither against its own.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <nlohmann/json.hpp>

#include "endtoend/program.h"
#include "realfiles/checksum.h"
#include "realfiles/recording.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;
using Arguments = std::vector<std::u16string>;

std::string BytesOf(const std::u16string& path) {
    std::ifstream file(fs::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Runs quaver to a good end. The result is its standard output.
std::string Answer(const Arguments& arguments) {
    Quaver quaver(arguments);
    EXPECT_EQ(quaver.Finish(), 0u) << quaver.Errors();
    EXPECT_EQ(quaver.Errors(), "");
    return quaver.Output();
}

// One question about all recordings at once. The answers stand in their order.
Json AskForAll(const char16_t* command) {
    Arguments arguments = {command, u"--json"};
    for (const Recording& recording : Recordings()) arguments.push_back(recording.Path());
    const Json answers = Json::parse(Answer(arguments)).at("files");
    EXPECT_EQ(answers.size(), Recordings().size());
    return answers;
}

Recording::Fields FieldsOf(const Json& answer) {
    Recording::Fields fields;
    for (const Json& row : answer.at("tags")) fields.emplace(row.at("name"), row.at("value"));
    return fields;
}

std::string DecodedSamples(const std::u16string& file) {
    return Answer({u"decode", u"--raw", file});
}

double LoudnessOf(const std::string& floats) {
    double sum = 0.0;
    for (std::size_t at = 0; at + sizeof(float) <= floats.size(); at += sizeof(float)) {
        float sample;
        std::memcpy(&sample, floats.data() + at, sizeof sample);
        sum += double{sample} * double{sample};
    }
    return std::sqrt(sum / std::max(static_cast<double>(floats.size() / sizeof(float)), 1.0));
}

// 16-bit samples, which the other programs gave, know no more of a quiet recording and cut the peaks of a loud one.
void ExpectSameLoudness(const Recording& recording, const std::string& samples) {
    EXPECT_NEAR(LoudnessOf(samples), recording.loudness, 2e-5 + 0.01 * recording.loudness);
}

// Does the work for every recording, on two threads.
template <class Work>
void ForEach(Work work) {
    const auto half = [&](std::size_t first) {
        for (std::size_t i = first; i < Recordings().size(); i += 2) {
            SCOPED_TRACE(Recordings()[i].file);
            work(Recordings()[i], i);
        }
    };
    std::future<void> other = std::async(std::launch::async, half, 1);
    half(0);
    other.get();
}

}  // namespace

TEST(Recordings, Are_there_in_number_and_unchanged) {
    std::map<std::string, int> kinds;
    for (const Recording& recording : Recordings()) {
        ++kinds[recording.Extension()];
        const std::string bytes = BytesOf(recording.Path());
        EXPECT_TRUE(bytes.size() == recording.size && Checksum(bytes) == recording.crc)
            << recording.file
            << " is missing or another one: script/bootstrap test installs, tests/realfiles/record records";
    }
    EXPECT_GE(Recordings().size(), 100u);
    EXPECT_GE(kinds["wav"], 30);
    EXPECT_GE(kinds["flac"], 10);
    EXPECT_GE(kinds["ogg"] + kinds["oga"], 30);
    EXPECT_GE(kinds["opus"], 10);
}

TEST(Recordings, Have_the_format_and_length_that_others_find) {
    const Json answers = AskForAll(u"info");
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const Recording& recording = Recordings()[i];
        SCOPED_TRACE(recording.file);
        EXPECT_EQ(answers[i].at("format").at("sampleRate"), recording.rate);
        EXPECT_EQ(answers[i].at("format").at("channels"), recording.channels);
        EXPECT_EQ(answers[i].at("format").at("bitsPerSample"), recording.bits);
        EXPECT_EQ(answers[i].at("lengthMs"), recording.frames * 1000 / recording.rate);
        EXPECT_EQ(answers[i].at("fileSize"), recording.size);
    }
}

TEST(Recordings, Have_the_tags_that_others_find) {
    const Json answers = AskForAll(u"tags");
    std::size_t tagged = 0;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const Recording& recording = Recordings()[i];
        if (!recording.tags) continue;
        SCOPED_TRACE(recording.file);
        EXPECT_EQ(FieldsOf(answers[i]), *recording.tags);
        tagged += !recording.tags->empty();
    }
    EXPECT_GE(tagged, 10u);
}

// Lossless ones to the last bit, the others to the last frame and as loud as others decode them.
TEST(Recordings, Decode_to_what_others_decode) {
    ForEach([](const Recording& recording, std::size_t) {
        const std::string samples = DecodedSamples(recording.Path());
        EXPECT_EQ(samples.size(), recording.AudioBytes());
        if (recording.audio) {
            EXPECT_EQ(Checksum(samples), *recording.audio);
        } else {
            ExpectSameLoudness(recording, samples);
        }
    });
}

// WAVE becomes FLAC and all else WAVE: either keeps every sample, and the tags go along.
TEST(Recordings, Convert_without_a_sample_lost) {
    const TempFolder folder;
    ForEach([&](const Recording& recording, std::size_t index) {
        const std::string number = std::to_string(index);
        const bool toFlac = recording.Extension() == "wav";
        const std::u16string target =
            folder / (std::u16string(number.begin(), number.end()) + (toFlac ? u".flac" : u".wav"));
        // Named, since to find an encoder all of them are loaded.
        Answer({u"convert", u"--quiet", u"-e", toFlac ? u"FLAC" : u"Wave", recording.Path(), target});
        const std::string samples = DecodedSamples(target);
        EXPECT_EQ(samples.size(), recording.AudioBytes());
        if (recording.audio) {
            EXPECT_EQ(Checksum(samples), *recording.audio);
        } else {
            ExpectSameLoudness(recording, samples);
        }
    });
}
