// Files that are cut or changed: always an end, always the truth.
#include <random>

#include "codecs/codec_table.h"

namespace {

constexpr std::uint32_t kFrames = 60001;

class Damage : public CodecTest {
  protected:
    Damage() {
        Encode(kFrames);
        good = FileBytes();
    }

    // Where bytes begin that the format's check sums cover: behind the metadata of a FLAC file, everywhere in
    // others.
    std::size_t Covered() const {
        if (!good.starts_with("fLaC")) return 0;
        std::size_t at = 4;
        for (bool last = false; !last;) {
            const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(good[at + i]); };
            last = (byte(0) & 0x80) != 0;
            at += 4 + (std::size_t{byte(1)} << 16 | std::size_t{byte(2)} << 8 | byte(3));
        }
        return at;
    }

    std::string good;
};

TEST_P(Damage, of_a_cut_is_told_at_every_place) {
    std::mt19937 random(50);
    for (int i = 0; i < 50; ++i) {
        const std::size_t keep = i == 0 ? 0 : i == 1 ? good.size() - 1 : random() % good.size();
        const Decoding decoding = modules.Decode(Rewrite(std::string_view(good).substr(0, keep)));
        EXPECT_EQ(decoding.finished, decoding.opened) << keep;
        EXPECT_NE(decoding.errors, u"") << keep << " of " << good.size();
        EXPECT_TRUE(!decoding.opened || decoding.audio.size() / FrameBytesOf(decoding) <= kFrames) << keep;
    }
}

TEST_P(Damage, of_a_changed_byte_never_holds_anybody) {
    std::mt19937 random(51);
    const std::size_t covered = Covered();
    for (int i = 0; i < 50; ++i) {
        std::string bad = good;
        const std::size_t at = covered + random() % (bad.size() - covered);
        bad[at] = static_cast<char>(bad[at] ^ (1 << random() % 8));
        const Decoding decoding = modules.Decode(Rewrite(bad));
        EXPECT_EQ(decoding.finished, decoding.opened) << at;
        const bool mustTell = GetParam().hasCheckSums || !decoding.opened;
        EXPECT_TRUE(!mustTell || !decoding.errors.empty()) << at << " of " << good.size();
    }
}

TEST_P(Damage, of_everything_is_refused_in_words) {
    std::mt19937 random(52);
    for (int i = 0; i < 20; ++i) {
        std::string noise(random() % 5000, '\0');
        for (char& byte : noise) byte = static_cast<char>(random());
        const Decoding decoding = modules.Decode(Rewrite(noise));
        EXPECT_EQ(decoding.finished, decoding.opened) << i;
        EXPECT_NE(decoding.errors, u"") << i;
    }
}

TEST_P(Damage, of_a_file_that_is_not_there_is_told) {
    const Decoding decoding = modules.Decode(folder / u"nothing");
    EXPECT_FALSE(decoding.opened);
    EXPECT_NE(decoding.errors.find(folder / u"nothing"), std::u16string::npos);
}

TEST_P(Damage, to_the_order_of_calls_ends_too) {
    modules.Decoder().Destroy();
    ASSERT_TRUE(modules.Decoder().Create(modules.Log().Log()));
    std::string audio;
    EXPECT_FALSE(modules.DecodeBlock(audio));
    EXPECT_EQ(audio, "");
    EXPECT_NE(modules.Log().TakeErrors(), u"");
    modules.Decoder().SetPosition(5);
    modules.Decoder().Close(nullptr);
    EXPECT_FALSE(modules.DecodeBlock(audio));
}

TEST_P(Damage, when_tags_or_rows_are_asked_of_a_cut_file_is_survived) {
    std::mt19937 random(53);
    for (int i = 0; i < 50; ++i) {
        const std::size_t keep = random() % good.size();
        const std::u16string file = Rewrite(std::string_view(good).substr(0, keep));
        for (const std::uint32_t request : {QV_OPEN_PROPERTIES, QV_OPEN_TAGS, QV_OPEN_PROPERTY_ROWS}) {
            clOpenFileRec record;
            const bool opened = modules.Open(file, request, record);
            EXPECT_TRUE(opened || !modules.Log().TakeErrors().empty()) << keep;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, Damage, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
