// Files whose frames or headers are not as they should be: the audio that is there keeps its place.
#include "flac/flac_file.h"

namespace {

class FlacDamage : public Flac {
  protected:
    FlacDamage() : parts(Split(Encode(stereo, audio), kFrames)) {}

    // The audio with the blocks from `first` up to `last` silenced.
    std::string Silenced(std::size_t first, std::size_t last) const {
        std::string silenced = audio;
        const std::size_t block = kBlockFrames * 4;
        return silenced.replace(first * block, (last - first) * block, (last - first) * block, '\0');
    }

    FlacParts parts;
};

}  // namespace

TEST_F(FlacDamage, Of_a_frame_leaves_silence_in_its_place) {
    for (const std::size_t block : {0u, 1u, 7u}) {
        FlacParts damaged = parts;
        damaged.frames[block][damaged.frames[block].size() / 2] ^= 1;
        const Decoding decoding = Decode(damaged.Whole());
        EXPECT_EQ(Errors(decoding), "is damaged at frame " + std::to_string(block * kBlockFrames) + "\r\n");
        EXPECT_TRUE(decoding.audio == Silenced(block, block + 1)) << block;
    }
}

TEST_F(FlacDamage, Of_frames_that_are_gone_without_a_trace_is_told) {
    for (const std::size_t block : {0u, 3u}) {
        FlacParts damaged = parts;
        const auto at = damaged.frames.begin() + static_cast<std::ptrdiff_t>(block);
        damaged.frames.erase(at, at + 2);
        const Decoding decoding = Decode(damaged.Whole());
        EXPECT_EQ(Errors(decoding), "is damaged at frame " + std::to_string(block * kBlockFrames) + "\r\n");
        EXPECT_TRUE(decoding.audio == Silenced(block, block + 2)) << block;
    }
}

TEST_F(FlacDamage, Of_frames_that_come_twice_or_too_early_leaves_them_out) {
    FlacParts damaged = parts;
    damaged.frames.insert(damaged.frames.begin() + 5, damaged.frames[2]);
    const Decoding decoding = Decode(damaged.Whole());
    EXPECT_EQ(Errors(decoding), "is damaged at frame 20480\r\n");
    EXPECT_TRUE(decoding.audio == audio);
}

TEST_F(FlacDamage, Of_the_end_is_told_by_what_is_missing) {
    FlacParts damaged = parts;
    damaged.frames.resize(10);
    const Decoding decoding = Decode(damaged.Whole());
    EXPECT_EQ(Errors(decoding), "9041 of 50001 frames are missing\r\n");
    EXPECT_TRUE(decoding.audio == audio.substr(0, 10 * kBlockFrames * 4));
}

TEST_F(FlacDamage, More_than_five_seconds_long_is_not_filled) {
    const QvFormatExtensible slow = PcmFormat(1000, 2, 16);
    FlacParts damaged = Split(Encode(slow, audio), kFrames);
    damaged.frames.erase(damaged.frames.begin(), damaged.frames.begin() + 2);
    const Decoding decoding = Decode(damaged.Whole());
    EXPECT_EQ(Errors(decoding), "is damaged at frame 0\r\n8192 of 50001 frames are missing\r\n");
    EXPECT_TRUE(decoding.audio == audio.substr(2 * kBlockFrames * 4));
}

TEST_F(FlacDamage, Of_the_format_leaves_that_part_out) {
    const QvFormatExtensible mono = PcmFormat(44100, 1, 16), fast = PcmFormat(48000, 2, 16),
                             deep = PcmFormat(44100, 2, 24);
    for (const QvFormatExtensible& other : {mono, fast, deep}) {
        FlacParts damaged = parts;
        damaged.frames[4] = Split(Encode(other, Noise(kFrames, other)), kFrames).frames[4];
        const Decoding decoding = Decode(damaged.Whole());
        EXPECT_EQ(Errors(decoding), "changes its format on the way, that part is left out\r\n");
        EXPECT_TRUE(decoding.audio == Silenced(4, 5));
    }
}

TEST_F(FlacDamage, Is_no_hindrance_to_a_seek) {
    FlacParts damaged = parts;
    for (const std::size_t block : {3u, 4u, 8u}) damaged.frames[block][damaged.frames[block].size() / 2] ^= 1;
    std::string expected = Silenced(3, 5);
    expected.replace(8 * kBlockFrames * 4, kBlockFrames * 4, kBlockFrames * 4, '\0');
    Open(damaged.Whole());
    for (const std::int64_t frame : {0, 5000, 12287, 12288, 14000, 20480, 33000, 50000})
        EXPECT_TRUE(From(frame) == expected.substr(static_cast<std::size_t>(frame) * 4)) << frame;
}

TEST_F(FlacDamage, That_only_the_check_sum_knows_of_is_told_at_the_end) {
    std::string file = parts.Whole();
    SetCheckSum(file, "0123456789abcdef");
    const Decoding decoding = Decode(file);
    EXPECT_EQ(Errors(decoding), "its audio does not match its check sum\r\n");
    EXPECT_TRUE(decoding.audio == audio);

    Open(file);
    EXPECT_TRUE(From(1) == audio.substr(4));  // which can't be compared
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
    EXPECT_TRUE(From(0) == audio);
    EXPECT_NE(modules.Log().TakeErrors(), u"");
}

TEST_F(FlacDamage, Is_not_what_lies_around_the_audio) {
    const std::string tag = std::string("ID3\x04\0\0\0\0\x02\x00", 10) + std::string(256, 'x');
    const std::string behind = "TAG" + std::string(125, ' ');
    const Decoding decoding = Decode(tag + parts.Whole() + behind);
    EXPECT_EQ(decoding.errors, u"");
    EXPECT_TRUE(decoding.audio == audio);
}

TEST_F(FlacDamage, Is_not_a_length_left_open) {
    std::string file = parts.Whole();
    SetLength(file, 0);
    SetCheckSum(file, std::string(16, '\0'));
    for (const std::string& behind : {std::string(), "TAG" + std::string(125, ' ')}) {
        Open(file);
        for (const std::int64_t frame : {0, 4095, 4096, 40000, 50000, 50001, 60000, 0})
            EXPECT_TRUE(From(frame) == audio.substr(std::min<std::size_t>(
                                           audio.size(), static_cast<std::size_t>(frame) * 4)))
                << frame;
        EXPECT_EQ(modules.Log().TakeErrors(), u"");
        const Decoding decoding = Decode(file + behind);
        EXPECT_EQ(ValueOf(decoding.record.lengthMs), kFrames * std::uint64_t{1000} / 44100);
        EXPECT_EQ(decoding.errors, u"");
    }
}

TEST_F(FlacDamage, Of_a_cut_is_told_without_a_length_too) {
    SetLength(parts.headers, 0);
    std::string file = parts.Whole();
    const std::size_t last = file.size() - parts.frames.back().size();
    for (const std::size_t keep : {last + 1, last + 3, last + 5, last + 1000, file.size() - 1}) {
        const Decoding decoding = Decode(file.substr(0, keep));
        EXPECT_EQ(ValueOf(decoding.record.lengthMs), 0u);
        EXPECT_NE(decoding.errors, u"") << keep - last;
        EXPECT_TRUE(decoding.audio == audio.substr(0, 12 * kBlockFrames * 4));
    }
}

TEST_F(FlacDamage, Is_not_a_beginning_in_the_middle_of_a_longer_stream) {
    SetLength(parts.headers, 0);
    SetCheckSum(parts.headers, std::string(16, '\0'));
    parts.frames.erase(parts.frames.begin(), parts.frames.begin() + 3);
    const std::string rest = audio.substr(3 * kBlockFrames * 4);
    Open(parts.Whole());
    for (const std::int64_t frame : {0, 1, 20000, 37712})
        EXPECT_TRUE(From(frame) == rest.substr(static_cast<std::size_t>(frame) * 4)) << frame;
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
}

TEST_F(FlacDamage, Of_comments_is_told_and_the_audio_is_there) {
    std::string file = parts.Whole();
    file[4 + 4 + 34 + 4 + 3] = '\x7F';  // the length of the encoder's name
    const Decoding decoding = Decode(file);
    EXPECT_EQ(Errors(decoding), "its metadata are damaged\r\n");
    EXPECT_TRUE(decoding.audio == audio);
}

TEST_F(FlacDamage, Of_headers_refuses_the_file) {
    const std::string file = parts.Whole();
    std::string noRate = file;
    noRate[18] = noRate[19] = 0;
    noRate[20] = static_cast<char>(noRate[20] & 0x0F);
    const struct {
        std::string bytes;
        const char* words;
    } rows[] = {{"", "it is no FLAC file\r\n"},
                {"fLaC", "it is no FLAC file\r\n"},
                {std::string(10000, 'f'), "it is no FLAC file\r\n"},
                {file.substr(0, 40), "it is no FLAC file\r\n"},
                {file.substr(0, 100), "it ends before its audio\r\n"},
                {noRate, "its sample rate is 0\r\n"}};
    for (const auto& row : rows) {
        const Decoding decoding = Decode(row.bytes);
        EXPECT_FALSE(decoding.opened);
        EXPECT_EQ(Errors(decoding), row.words);
    }
}
