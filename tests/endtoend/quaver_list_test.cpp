// quaver list: what the folders of modules offer.
#include <nlohmann/json.hpp>

#include "endtoend/quaver_run.h"

namespace {

using Json = nlohmann::json;

class QuaverList : public QuaverRun {
  protected:
    static bool Has(const Json& rows, const Json& row) {
        return std::find(rows.begin(), rows.end(), row) != rows.end();
    }
    static bool IsSortedByName(const Json& rows) {
        return std::is_sorted(rows.begin(), rows.end(), [](const Json& one, const Json& other) {
            return one["name"].get<std::string>() < other["name"].get<std::string>();
        });
    }
};

}  // namespace

TEST_F(QuaverList, Shows_encoders_decoders_and_effects) {
    Expect({u"list"}, kDone);
    EXPECT_TRUE(output.starts_with("Encoders\n")) << output;
    const std::size_t decoders = output.find("\nDecoders\n"), effects = output.find("\nEffects\n"),
                      encoder = output.find("\n  Wave "), decoder = output.find("  Wave ", decoders);
    EXPECT_LT(encoder, decoders) << output;
    EXPECT_LT(decoder, effects) << output;
    ASSERT_NE(effects, std::string::npos) << output;
    EXPECT_NE(output.substr(decoder).find("WAVE audio\n"), std::string::npos) << output;
    EXPECT_EQ(errors, "");
}

TEST_F(QuaverList, Tells_programs_the_same) {
    Expect({u"list", u"--json"}, kDone);
    const Json list = Json::parse(output);
    EXPECT_EQ(list.size(), 3u);
    EXPECT_TRUE(Has(list["encoders"], {{"name", "Wave"}, {"extension", ".wav"}})) << output;
    EXPECT_TRUE(
        Has(list["decoders"], {{"name", "Wave"}, {"extension", ".rf64"}, {"description", "RF64 audio"}}))
        << output;
    EXPECT_TRUE(list["effects"].is_array());
    for (const char* kind : {"encoders", "decoders", "effects"})
        EXPECT_TRUE(IsSortedByName(list[kind])) << output;
}

TEST_F(QuaverList, Comes_out_the_same_every_time) {
    for (const Arguments& arguments : {Arguments{u"list"}, {u"list", u"--json"}}) {
        Expect(arguments, kDone);
        const std::string first = output;
        Expect(arguments, kDone);
        EXPECT_EQ(output, first);
    }
}
