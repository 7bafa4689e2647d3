// A whole file through the built library, its converter and the Wave modules: what comes out when all is
// well.
#include <algorithm>

#include "endtoend/conversion.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "platform/file.h"
#include "platform/names.h"
#include "support/handle_gauge.h"

namespace {

class Conversion : public Stage {
  protected:
    Conversion() : source(files.Write(u"in.wav", Recording(300000))) {}

    Order ToOutput() const { return {source, files / u"out.wav"}; }

    const std::u16string source;
};

// A folder below `parent` whose path has more units than a plain path may have.
std::u16string MakeDeepFolder(const std::u16string& parent) {
    std::u16string path = parent;
    while (path.size() <= 300) {
        path += platform::kPathSeparator + std::u16string(60, u'd');
        EXPECT_TRUE(platform::CreateDirectoryW((platform::kLongPathPrefix + path).c_str()));
    }
    return path + platform::kPathSeparator;
}

}  // namespace

TEST_F(Conversion, Carries_the_audio_over_unchanged_and_says_how_it_went) {
    Host host(library);
    const Outcome outcome = host.Convert(ToOutput());
    EXPECT_TRUE(outcome.started);
    EXPECT_EQ(outcome.errors, u"");
    EXPECT_TRUE(outcome.Says(u"Encoding finished"));
    EXPECT_TRUE(outcome.Says(u"Conversion complete"));
    EXPECT_TRUE(std::is_sorted(outcome.percents.begin(), outcome.percents.end()));
    EXPECT_EQ(outcome.Percent(), 100u);
    EXPECT_TRUE(HaveSameAudio(source, files / u"out.wav"));
}

TEST_F(Conversion, Leaves_nothing_but_its_output) {
    {
        Host host(library);
        EXPECT_TRUE(host.Convert(ToOutput()).Succeeded());
    }
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
    EXPECT_EQ(NamesIn(temporaries.Path()), std::set<std::u16string>());
}

TEST_F(Conversion, Gives_its_handles_back) {
    {
        Host warmUp(library);
        EXPECT_TRUE(warmUp.Convert(ToOutput()).Succeeded());
    }
    const HandleGauge before;
    {
        Host host(library);
        EXPECT_TRUE(host.Convert(ToOutput()).Succeeded());
    }
    EXPECT_EQ(HandleGauge(), before);
}

TEST_F(Conversion, Comes_again_on_the_same_handle) {
    Host host(library);
    for (std::uint32_t number = 1; number <= 3; ++number) {
        const std::u16string next = files.Write(u"next.wav", Recording(100000, number));
        EXPECT_TRUE(host.Convert({next, files / u"out.wav"}).Succeeded()) << number;
        EXPECT_TRUE(HaveSameAudio(next, files / u"out.wav")) << number;
    }
}

TEST_F(Conversion, Replaces_an_existing_destination) {
    files.Write(u"out.wav", "older and much shorter");
    Host host(library);
    EXPECT_TRUE(host.Convert(ToOutput()).Succeeded());
    EXPECT_TRUE(HaveSameAudio(source, files / u"out.wav"));
}

TEST_F(Conversion, May_have_its_source_as_destination) {
    const std::u16string both = files.Write(u"both.wav", Recording(200000, 1));
    const std::u16string copy = files.Write(u"copy.wav", Recording(200000, 1));
    Host host(library);
    EXPECT_TRUE(host.Convert({both, both}).Succeeded());
    EXPECT_TRUE(HaveSameAudio(both, copy));
}

TEST_F(Conversion, Runs_on_the_processor_that_is_named_or_on_any) {
    Host host(library);
    for (const std::int32_t processor : {1, -1, 0, 999}) {
        Order order = ToOutput();
        order.processor = processor;
        const Outcome outcome = host.Convert(order);
        EXPECT_TRUE(outcome.Succeeded()) << processor;
        EXPECT_EQ(outcome.Says(u"Processor 999 can't be chosen"), processor == 999) << processor;
    }
}

TEST_F(Conversion, Is_not_upset_by_tags_whatever_they_hold) {
    Order order = ToOutput();
    order.tags = {{u"Title", u"The \"quoted\" song"},
                  {u"{qt}", u"{qt}\" -infile=\"x"},
                  {u"a\"b", u"=="},
                  {u"Empty", u""},
                  {u"Long", std::u16string(100000, u'l')}};
    for (const bool carry : {true, false}) {
        order.carryTags = carry;
        Host host(library);
        const Outcome outcome = host.Convert(order);
        EXPECT_TRUE(outcome.Succeeded());
        EXPECT_FALSE(outcome.Says(u"No tags were written to"));
        EXPECT_TRUE(HaveSameAudio(source, order.destination));
        EXPECT_NE(files.Read(u"out.wav").find("The \"quoted\" song"), std::string::npos);
    }
}

TEST_F(Conversion, Takes_file_names_of_every_kind) {
    const std::u16string names[] = {
        u"two words",
        u" leading",
        u"Grüße äöü ß",
        u"\U0001F3B5 note",
        u"it's 'quoted'",
        u"100%s %d %%",
        u"a=b",
        u"-infile=x",
        u"semi;colon,comma",
        u"no.dots.here",
        std::u16string(200, u'n'),
    };
    Host host(library);
    for (const std::u16string& name : names) {
        const std::u16string from = files.Write(name + u".in.wav", Recording(5000));
        const std::u16string to = files / (name + u".out.wav");
        const Outcome outcome = host.Convert({from, to});
        EXPECT_TRUE(outcome.Succeeded()) << testing::PrintToString(to + outcome.errors);
        EXPECT_TRUE(HaveSameAudio(from, to)) << testing::PrintToString(to);
    }
}

TEST_F(Conversion, Takes_paths_longer_than_a_plain_path_may_be) {
    const std::u16string folder = MakeDeepFolder(files.Path());
    const std::u16string from = folder + u"in.wav", to = folder + u"out.wav";
    ASSERT_TRUE(platform::CopyFileW(source.c_str(), (platform::kLongPathPrefix + from).c_str(), true));
    Host host(library);
    const Outcome outcome = host.Convert({from, to});
    EXPECT_TRUE(outcome.Succeeded()) << testing::PrintToString(outcome.errors);
    EXPECT_TRUE(HaveSameAudio(from, to));
}
