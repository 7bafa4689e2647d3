// Conversions that can't succeed: the reason comes in words, nothing stands under the final name, what stood
// there before still stands there byte by byte, and the handle is good for the next one.
#include <string_view>

#include "endtoend/conversion.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "platform/file.h"
#include "platform/names.h"
#include "platform/synchronisation.h"

namespace {

class FailedConversion : public Stage {
  protected:
    FailedConversion() {
        files.Write(u"in.wav", Recording(300000));
        files.Write(u"cut.wav", CutRecording(300000, 4000));
        files.Write(u"noise.wav", std::string(1000, 'x'));
        files.Write(u"empty.wav");
        files.Write(u"in.unknown", Recording(1000));
    }

    // Runs the order, which must fail with `words` among the errors and change nothing on the disk.
    void ExpectFailure(const Order& order, std::u16string_view words) {
        const std::set<std::u16string> before = NamesIn(files.Path());
        const Outcome outcome = host.Convert(order);
        EXPECT_TRUE(outcome.ended);
        EXPECT_NE(outcome.errors.find(words), std::u16string::npos) << testing::PrintToString(outcome.errors);
        EXPECT_FALSE(outcome.Says(u"Conversion complete"));
        EXPECT_TRUE(outcome.Says(u"Encoding finished"));
        EXPECT_EQ(NamesIn(files.Path()), before);
    }

    Host host{library};
};

struct Trouble {
    const char* name;
    std::u16string source, encoder, settings;
    std::vector<Order::Pair> effects;
    std::u16string words;
};

std::vector<Trouble> Troubles() {
    const std::u16string up =
        std::u16string(u"..") + platform::kPathSeparator + u"encoder" + platform::kPathSeparator + u"Wave";
    return {
        {"missing source", u"none.wav", u"Wave", u"", {}, u"none.wav"},
        {"a folder as source", u"", u"Wave", u"", {}, u"No decoder reads"},
        {"source of no known kind", u"in.unknown", u"Wave", u"", {}, u"No decoder reads"},
        {"source that is no recording", u"noise.wav", u"Wave", u"", {}, u"Can't open"},
        {"empty source", u"empty.wav", u"Wave", u"", {}, u"Can't open"},
        {"source cut short against its header", u"cut.wav", u"Wave", u"", {}, u"cut.wav"},
        {"unknown encoder", u"in.wav", u"Wavelet", u"", {}, u"There is no encoder 'Wavelet'"},
        {"no encoder", u"in.wav", u"", u"", {}, u"There is no encoder ''"},
        {"an encoder that is a path", u"in.wav", up, u"", {}, u"There is no encoder '" + up + u"'"},
        {"an encoder that is a path with slashes",
         u"in.wav",
         u"../encoder/Wave",
         u"",
         {},
         u"There is no encoder"},
        {"refused settings", u"in.wav", u"Wave", u"-header=huge", {}, u"The encoder refuses to write"},
        {"a switch in the settings",
         u"in.wav",
         u"Wave",
         u"-tag=\"a=b\"",
         {},
         u"Error in the command at position"},
        {"effect that is not there",
         u"in.wav",
         u"Wave",
         u"",
         {{u"Echo", u"1"}},
         u"There is no effect 'Echo'"},
        {"a quote in an effect's name", u"in.wav", u"Wave", u"", {{u"E\"x", u""}}, u"Error in the command"},
    };
}

}  // namespace

TEST_F(FailedConversion, Leaves_no_destination) {
    for (const Trouble& trouble : Troubles()) {
        SCOPED_TRACE(trouble.name);
        ExpectFailure({files / trouble.source,
                       files / u"out.wav",
                       trouble.encoder,
                       trouble.settings,
                       {},
                       trouble.effects},
                      trouble.words);
    }
    EXPECT_TRUE(host.Convert({files / u"in.wav", files / u"out.wav"}).Succeeded());
}

TEST_F(FailedConversion, Leaves_an_existing_destination_as_it_was) {
    const std::string old = Recording(1000, 7);
    files.Write(u"out.wav", old);
    for (const Trouble& trouble : Troubles()) {
        SCOPED_TRACE(trouble.name);
        ExpectFailure({files / trouble.source,
                       files / u"out.wav",
                       trouble.encoder,
                       trouble.settings,
                       {},
                       trouble.effects},
                      trouble.words);
        EXPECT_EQ(files.Read(u"out.wav"), old);
    }
}

TEST_F(FailedConversion, Cut_short_in_place_keeps_what_there_is) {
    const std::string cut = files.Read(u"cut.wav");
    ExpectFailure({files / u"cut.wav", files / u"cut.wav"}, u"cut.wav");
    EXPECT_EQ(files.Read(u"cut.wav"), cut);
}

TEST_F(FailedConversion, Makes_no_folder_for_its_destination) {
    ExpectFailure({files / u"in.wav", files / u"missing/out.wav"}, u"Can't write beside");
}

TEST_F(FailedConversion, Does_not_replace_a_folder) {
    files.MakeFolder(u"taken.wav");
    ExpectFailure({files / u"in.wav", files / u"taken.wav"}, u"Can't replace");
    EXPECT_TRUE(NamesIn(files / u"taken.wav").empty());
}

// A quote ends the value it stands in, so a name that holds one could continue as further switches. The last
// of these goes as far as it can: it brings a whole command of its own, with events that exist.
TEST_F(FailedConversion, Smuggles_no_switch_in_through_a_quote) {
    const platform::Handle event = platform::CreateEventW(u"quavermill-test-smuggled");
    const std::u16string in = files / u"in.wav", smuggled = files / u"smuggled.wav", out = files / u"out.wav";
    const std::u16string all = in + u"\" -outfile=\"" + smuggled + u"\" -convert_to=\"Wave";
    const std::u16string events =
        u"\" -evtquit=\"quavermill-test-smuggled\" -evtwatchdog=\"quavermill-test-smuggled";
    ExpectFailure({in + u"\" -outfile=\"" + smuggled, out}, u"Error in the command at position");
    ExpectFailure({all, out}, u"Error in the command at position");
    ExpectFailure({in + u"\"", out}, u"Error in the command at position");
    ExpectFailure({in, out + u"\" -convert_to=\"Wave"}, u"Error in the command at position");
    ExpectFailure({in, out, u"Wave\" -noidtag -tag=\"a=b"}, u"Error in the command at position");
    ExpectFailure({all + events, out}, u"Error in the command at position");
    ExpectFailure({all + events + u"\" ", out}, u"The encoder refuses to write");
    EXPECT_FALSE(files.Has(u"smuggled.wav"));
    platform::CloseHandle(event);
}
