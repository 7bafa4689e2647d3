// What the module folders offer, as a host walks through it row by row.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "interface/host.h"
#include "modules/module_home.h"
#include "platform/file.h"
#include "platform/names.h"
#include "support/allocation_faults.h"

namespace {

using Texts = std::vector<std::u16string>;

// A row as a host gets it: the result, and what the buffers hold then.
struct Row {
    std::int32_t result;
    std::u16string name, extension, description;
    bool operator==(const Row&) const = default;
};

const Row kNothing = {0, u"#", u"#", u"#"};

class Listing : public testing::Test {
  public:
    Listing() { host->moduleHandle = home.Self(); }

    Row Encoder(std::int32_t index) {
        char16_t name[300] = u"#", extension[64] = u"#";
        const std::int32_t result = QACGetEncoder(host.handle, index, Out(name), Out(extension));
        return {result, name, extension, u"#"};
    }
    Row Decoder(std::int32_t index) {
        char16_t name[300] = u"#", extension[64] = u"#", description[64] = u"#";
        const std::int32_t result =
            QACGetDecoder(host.handle, index, Out(name), Out(extension), Out(description));
        return {result, name, extension, description};
    }
    Row Effect(std::int32_t index) {
        char16_t name[300] = u"#";
        const std::int32_t result = QACGetDSP(host.handle, index, Out(name));
        return {result, name, u"#", u"#"};
    }
    // All rows, by the walk of a host.
    std::vector<Row> Walk(Row (Listing::*read)(std::int32_t)) {
        std::vector<Row> rows;
        for (std::int32_t index = 0;; ++index) {
            const Row row = (this->*read)(index);
            if (row.result != QV_DONE) return rows;
            rows.push_back(row);
        }
    }
    std::u16string TakeInfo() {
        timers.Tick();
        return host.Info();
    }

    ManualTimers timers;
    Host host;
    const ModuleHome home;
};

std::u16string Announcement(const std::u16string& modules) {
    return u"Getting list of available " + modules + u"\r\nFinished getting list of available " + modules +
           u"\r\n";
}

using ReadRow = Row (Listing::*)(std::int32_t);

}  // namespace

TEST_F(Listing, A_decoder_has_a_row_for_each_extension_all_of_its_name) {
    home.Place(u"decoder/An ABC reader", "scripted_decoder",
               "decodes|.Abc|An ABC file\ndecodes|.def|A DEF file\ndecodes|.GHI|A GHI file\n");
    EXPECT_EQ(Walk(&Listing::Decoder), (std::vector<Row>{{1, u"An ABC reader", u".Abc", u"An ABC file"},
                                                         {1, u"An ABC reader", u".def", u"A DEF file"},
                                                         {1, u"An ABC reader", u".GHI", u"A GHI file"}}));
    EXPECT_EQ(Decoder(3), kNothing);
}

TEST_F(Listing, An_encoder_has_one_row_with_its_extension_as_it_spells_it) {
    home.Place(u"encoder/An ABC writer", "scripted_encoder", "extension|.Abc\n");
    EXPECT_EQ(Walk(&Listing::Encoder), (std::vector<Row>{{1, u"An ABC writer", u".Abc", u"#"}}));
    EXPECT_EQ(Encoder(1), kNothing);
}

TEST_F(Listing, Decoders_and_encoders_stay_in_the_order_of_the_folder) {
    Texts encoders, decoders;
    for (const char16_t* name : {u"c", u"a", u"B", u"d"}) {
        home.Place(u"encoder/" + std::u16string(name), "whole_encoder");
        home.Place(u"decoder/" + std::u16string(name), "whole_decoder");
    }
    for (const Row& row : Walk(&Listing::Encoder)) encoders.push_back(row.name);
    for (const Row& row : Walk(&Listing::Decoder)) decoders.push_back(row.name);
    Texts listedEncoders, listedDecoders;
    for (const std::u16string& path : home.Listed(u"encoder"))
        listedEncoders.push_back(std::filesystem::path(path).stem().u16string());
    for (const std::u16string& path : home.Listed(u"decoder"))
        listedDecoders.push_back(std::filesystem::path(path).stem().u16string());
    EXPECT_EQ(encoders.size(), 4u);
    EXPECT_EQ(encoders, listedEncoders);
    EXPECT_EQ(decoders, listedDecoders);
}

TEST_F(Listing, Effects_are_sorted_by_unit_value_with_capitals_first) {
    for (const char16_t* name : {u"b", u"echo", u"Zoom",
                                 u"\x00E9"
                                 u"cho",
                                 u"A", u"10", u"2"})
        home.Place(u"DSPs/" + std::u16string(name), "text_file");
    Texts names;
    for (const Row& row : Walk(&Listing::Effect)) names.push_back(row.name);
    EXPECT_EQ(names, (Texts{u"10", u"2", u"A", u"Zoom", u"b", u"echo",
                            u"\x00E9"
                            u"cho"}));
}

TEST_F(Listing, A_name_loses_its_folder_and_its_last_extension_only) {
    const struct {
        const char16_t *place, *name;
    } rows[] = {{u"DSPs/two.dots", u"two.dots"}, {u"DSPs/a name", u"a name"}, {u"DSPs/.hidden", u".hidden"}};
    for (const auto& row : rows) {
        const PlacedModule placed = home.Place(row.place, "text_file");
        EXPECT_EQ(Effect(0), (Row{1, row.name, u"#", u"#"}));
        std::filesystem::remove(placed.Path());
    }
}

TEST_F(Listing, A_path_without_a_folder_and_an_extension_comes_out_whole) {
    host->dspNames.Add(u"first");
    host->dspNames.Add(u"plain");
    EXPECT_EQ(Effect(1), (Row{1, u"plain", u"#", u"#"}));
}

TEST_F(Listing, Index_0_looks_again_and_a_higher_index_reads_what_it_found) {
    const PlacedModule module =
        home.Place(u"decoder/abc", "scripted_decoder", "decodes|.a|A\ndecodes|.b|B\n");
    EXPECT_EQ(Decoder(1), kNothing) << "nobody has looked yet";
    EXPECT_EQ(module.TakeJournal(), "");
    EXPECT_EQ(Decoder(0), (Row{1, u"abc", u".a", u"A"}));
    EXPECT_EQ(Decoder(0), (Row{1, u"abc", u".a", u"A"}));
    EXPECT_EQ(host->decoderNames.Count(), 2) << "the second look has replaced the first";
    module.TakeJournal();
    module.SetScript("decodes|.c|C\n");
    EXPECT_EQ(Decoder(1), (Row{1, u"abc", u".b", u"B"}));
    EXPECT_EQ(module.TakeJournal(), "");
    EXPECT_EQ(Decoder(0), (Row{1, u"abc", u".c", u"C"}));
    EXPECT_EQ(Decoder(1), kNothing);
}

TEST_F(Listing, Rows_above_0_are_not_there_before_index_0_was_asked_for) {
    home.Place(u"encoder/a", "whole_encoder");
    home.Place(u"encoder/b", "whole_encoder");
    for (const char16_t* name : {u"DSPs/a", u"DSPs/b"}) home.Place(name, "whole_effect");
    EXPECT_EQ(Encoder(1), kNothing);
    EXPECT_EQ(Effect(1), kNothing);
    EXPECT_EQ(TakeInfo(), u"");
    EXPECT_EQ(Encoder(0).result, 1);
    EXPECT_EQ(Effect(0).result, 1);
    EXPECT_EQ(Encoder(1).result, 1);
    EXPECT_EQ(Effect(1).result, 1);
}

TEST_F(Listing, A_negative_index_and_one_from_the_count_on_look_nowhere_and_leave_the_buffers) {
    home.Place(u"decoder/abc", "whole_decoder");
    home.Place(u"encoder/abc", "whole_encoder");
    home.Place(u"DSPs/abc", "whole_effect");
    for (const ReadRow read : {&Listing::Encoder, &Listing::Decoder, &Listing::Effect}) {
        EXPECT_EQ((this->*read)(0).result, 1);
        TakeInfo();
        Faulty<platform::FindFirstFileW> walks;
        for (const std::int32_t index : {-1, INT32_MIN, 1, 2, INT32_MAX})
            EXPECT_EQ((this->*read)(index), kNothing) << index;
        EXPECT_EQ(walks.Calls(), 0);
        EXPECT_EQ(TakeInfo(), u"");
        EXPECT_EQ((this->*read)(0).result, 1);
    }
}

TEST_F(Listing, Each_look_is_told_in_two_lines_also_where_nothing_is_found) {
    const auto expectLines = [this](std::int32_t result) {
        EXPECT_EQ(Encoder(0).result, result);
        EXPECT_EQ(TakeInfo(), Announcement(u"encoders"));
        EXPECT_EQ(Decoder(0).result, result);
        EXPECT_EQ(TakeInfo(), Announcement(u"decoders"));
        EXPECT_EQ(Effect(0).result, result);
        EXPECT_EQ(TakeInfo(), Announcement(u"DSPs"));
        EXPECT_EQ(host.Errors(), u"");
    };
    expectLines(0);
    for (const char16_t* folder : {u"encoder", u"decoder", u"DSPs"}) home.Folder().MakeFolder(folder);
    expectLines(0);
    host->moduleHandle = nullptr;
    {
        Faulty<platform::GetModuleFileNameW> places;
        places.FailAlways();
        expectLines(0);
    }
    host->moduleHandle = home.Self();
    home.Place(u"encoder/a", "whole_encoder");
    home.Place(u"decoder/a", "whole_decoder");
    home.Place(u"DSPs/a", "whole_effect");
    expectLines(1);
}

TEST_F(Listing, What_modules_say_while_they_are_asked_reaches_the_host) {
    home.Place(u"decoder/a", "scripted_decoder", "say|Create|error|sour\nsay|Get|info|sweet\n");
    EXPECT_EQ(Decoder(0), kNothing);
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"sour\r\n");
    EXPECT_EQ(
        host.Info(),
        u"Getting list of available decoders\r\nsweet\r\nFinished getting list of available decoders\r\n");
}

TEST_F(Listing, An_encoder_without_an_answer_ends_the_walk_and_a_broken_effect_does_not) {
    for (const char16_t* name : {u"encoder/a", u"encoder/b"}) home.Place(name, "scripted_encoder", "get|0\n");
    EXPECT_EQ(Encoder(0), kNothing);
    home.Place(u"DSPs/broken", "text_file");
    EXPECT_EQ(Effect(0), (Row{1, u"broken", u"#", u"#"}));
}

TEST_F(Listing, Lists_belong_to_their_handle) {
    home.Place(u"DSPs/a", "whole_effect");
    home.Place(u"DSPs/b", "whole_effect");
    Host second;
    EXPECT_EQ(Effect(0).result, 1);
    char16_t name[300] = u"#";
    EXPECT_EQ(QACGetDSP(second.handle, 1, Out(name)), QV_NOTHING);
    EXPECT_EQ(Effect(1).result, 1);
}

TEST_F(Listing, A_null_handle_gives_0_and_null_buffers_receive_nothing) {
    home.Place(u"decoder/a", "whole_decoder");
    home.Place(u"encoder/a", "whole_encoder");
    home.Place(u"DSPs/a", "whole_effect");
    char16_t buffer[64] = u"#";
    EXPECT_EQ(QACGetEncoder(nullptr, 0, Out(buffer), Out(buffer)), 0);
    EXPECT_EQ(QACGetDecoder(nullptr, 0, Out(buffer), Out(buffer), Out(buffer)), 0);
    EXPECT_EQ(QACGetDSP(nullptr, 0, Out(buffer)), 0);
    EXPECT_EQ(std::u16string(buffer), u"#");
    const Trace trace(host);
    EXPECT_EQ(QACGetEncoder(host.handle, 0, nullptr, nullptr), 1);
    EXPECT_EQ(QACGetDecoder(host.handle, 0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(QACGetDSP(host.handle, 0, nullptr), 1);
    EXPECT_EQ(QACGetDSP(host.handle, 1, nullptr), 0);
}

TEST_F(Listing, The_trace_shows_the_look_and_the_buffers_as_the_host_has_them) {
    home.Place(u"encoder/abc", "scripted_encoder", "extension|.x\n");
    home.Place(u"decoder/abc", "scripted_decoder", "decodes|.y|Why\n");
    home.Place(u"DSPs/abc", "whole_effect");
    const auto lines = [](const std::u16string& modules, const char* method, const std::u16string& row) {
        const std::u16string mark = u"*** Information: ";
        return Enter(method) + mark + u"Getting list of available " + modules + u"\r\n" + mark +
               u"Finished getting list of available " + modules + u"\r\n  " + row + u"\r\n" + Leave(method);
    };
    Trace trace(host);
    Encoder(0);
    EXPECT_EQ(trace.Take(), lines(u"encoders", "clConverter::GetEncoder", u"Encoder: abc  Extension: .x"));
    Decoder(0);
    EXPECT_EQ(trace.Take(),
              lines(u"decoders", "clConverter::GetDecoder", u"Decoder: abc  Extension: .y  Desc: Why"));
    Effect(0);
    EXPECT_EQ(trace.Take(), lines(u"DSPs", "clConverter::GetDSP", u"DSP: abc"));
    for (const std::int32_t index : {1, -1}) {
        Encoder(index);
        Decoder(index);
        Effect(index);
    }
    std::u16string expected;
    for (int twice = 0; twice < 2; ++twice) {
        expected += Enter("clConverter::GetEncoder") + u"  Encoder: #  Extension: #\r\n" +
                    Leave("clConverter::GetEncoder") + Enter("clConverter::GetDecoder") +
                    u"  Decoder: #  Extension: #  Desc: #\r\n" + Leave("clConverter::GetDecoder") +
                    Enter("clConverter::GetDSP") + u"  DSP: #\r\n" + Leave("clConverter::GetDSP");
    }
    EXPECT_EQ(trace.Take(), expected);
}

TEST_F(Listing, Without_a_trace_nobody_looks_into_the_buffers) {
    const auto one = std::make_unique<char16_t>(u'!');  // no NUL
    EXPECT_EQ(QACGetEncoder(host.handle, 0, Out(one.get()), Out(one.get())), 0);
    EXPECT_EQ(QACGetDecoder(host.handle, -1, Out(one.get()), Out(one.get()), Out(one.get())), 0);
    EXPECT_EQ(QACGetDSP(host.handle, 5, Out(one.get())), 0);
    EXPECT_EQ(*one, u'!');
}

TEST_F(Listing, Memory_that_ends_while_looking_raises_and_the_handle_goes_on) {
    for (const char16_t* name : {u"a", u"b"}) {
        home.Place(u"decoder/" + std::u16string(name), "whole_decoder");
        home.Place(u"encoder/" + std::u16string(name), "whole_encoder");
        home.Place(u"DSPs/" + std::u16string(name), "whole_effect");
    }
    for (const ReadRow read : {&Listing::Encoder, &Listing::Decoder, &Listing::Effect}) {
        bool failed = true;
        for (int call = 1; failed; ++call) {
            bool raised = false;
            char16_t name[300], extension[64], description[64];
            {
                AllocationFaults memory;
                memory.FailCall(call);
                try {
                    if (read == &Listing::Encoder) host->GetEncoder(0, name, extension);
                    if (read == &Listing::Decoder) host->GetDecoder(0, name, extension, description);
                    if (read == &Listing::Effect) host->GetDSP(0, name);
                } catch (const std::bad_alloc&) {
                    raised = true;
                }
                failed = memory.HasFailed();
            }
            EXPECT_EQ(raised, failed) << call;
            // Whatever the list holds now can be read.
            for (std::int32_t index = 1; index < 4; ++index) (this->*read)(index);
        }
        EXPECT_EQ(Walk(read).size(), 2u);
    }
}
