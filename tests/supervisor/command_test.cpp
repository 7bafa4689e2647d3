// The command: what stands in the file, in which order, and how the two events get their names.
#include <gtest/gtest.h>

#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/names.h"
#include "platform/synchronisation.h"
#include "supervisor/owner.h"

namespace {

// A start that is refused at its last step, when the command stands.
struct Command : Owner {
    explicit Command(std::int32_t processor = 0, const char16_t* dspText = u"") {
        Create(processor, dspText);
    }

    const std::u16string& Text(const char16_t* settings = u"") {
        Start(settings);
        return launch.command;
    }
    // The text without the event names, which no two starts share.
    std::u16string Rest(const char16_t* settings = u"") {
        const std::u16string text = Text(settings);
        const std::size_t end = text.find(u'"', text.find(u" -evtwatchdog=") + 15) + 1;
        return text.substr(end);
    }
    Launch launch;
};

bool Exists(const std::u16string& event) {
    const platform::Handle handle = platform::OpenEventW(event.c_str());
    if (platform::IsOpen(handle)) platform::CloseHandle(handle);
    return platform::IsOpen(handle);
}

}  // namespace

TEST(ConverterCommand, switches_stand_in_their_order) {
    Command start(3, u"-dspeffect1=\"Gain=db=3\" ");
    start.Poll(false, false, 2);
    start.writeThrough = false;
    start.tags.Add(u"Artist", u"Somebody");
    start.tags.Add(u"Title", u"Something");
    const std::u16string text = start.Text(u"-quality 5");
    EXPECT_EQ(text, u" -infile=\"in.wav\" -outfile=\"out.qv\" -convert_to=\"WAV\" -evtquit=\"" +
                        start.launch.Value(u" -evtquit") + u"\" -evtwatchdog=\"" +
                        start.launch.Value(u" -evtwatchdog") +
                        u"\" -processor=\"3\" -priority=\"idle\" -dspeffect1=\"Gain=db=3\"  -noidtag"
                        u" -tag=\"Artist=Somebody\" -tag=\"Title=Something\" -quality 5");
}

TEST(ConverterCommand, file_is_bare_text_without_byte_order_mark_NUL_or_line_end) {
    Command start;
    const std::u16string text = start.Text(u"s\u00e9t");
    EXPECT_EQ(start.launch.commandBytes.size(), 2 * text.size());
    EXPECT_EQ(start.launch.commandBytes.substr(0, 4), std::string(" \0-\0", 4));
    EXPECT_EQ(start.launch.commandBytes.substr(2 * text.size() - 6), std::string("s\0\xe9\0t\0", 6));
}

TEST(ConverterCommand, processor_0_gives_no_switch_and_others_print_signed) {
    const struct {
        std::int32_t processor;
        const char16_t* rest;
    } rows[] = {{0, u" "},
                {1, u" -processor=\"1\" "},
                {-1, u" -processor=\"-1\" "},
                {2147483647, u" -processor=\"2147483647\" "},
                {-2147483647 - 1, u" -processor=\"-2147483648\" "}};
    for (const auto& row : rows) EXPECT_EQ(Command(row.processor).Rest(), row.rest) << row.processor;
}

TEST(ConverterCommand, priority_is_named_only_when_one_is_stored_at_the_start) {
    const struct {
        std::uint32_t priority;
        const char16_t* rest;
    } rows[] = {
        {0, u" "}, {1, u" -priority=\"low\" "}, {2, u" -priority=\"idle\" "}, {3, u" -priority=\"high\" "},
        {4, u" "}, {0xFFFFFFFF, u" "}};
    for (const auto& row : rows) {
        Command start;
        start.Poll(false, false, row.priority);
        EXPECT_EQ(start.Rest(), row.rest) << row.priority;
    }
}

TEST(ConverterCommand, preparation_forgets_the_priority_of_the_last_run) {
    Command start;
    start.Poll(false, false, 3);
    start.Create();
    EXPECT_EQ(start.Rest(), u" ");
}

TEST(ConverterCommand, start_forgets_the_percent_of_the_last_run) {
    Command start;
    start.Say(u"MSGTO: qMC: PCDone: 50\r\n");
    EXPECT_EQ(start.encoder.Percent(), 50);
    start.Start();
    EXPECT_EQ(start.encoder.Percent(), 0);
}

TEST(ConverterCommand, dsp_text_stands_as_it_is_behind_a_blank) {
    EXPECT_EQ(Command(0, u"-dspeffect1=\"A=\" ").Rest(u"x"), u" -dspeffect1=\"A=\"  x");
}

TEST(ConverterCommand, write_through_decides_on_noidtag) {
    Command start;
    start.writeThrough = false;
    EXPECT_EQ(start.Rest(), u" -noidtag ");
    start.writeThrough = true;
    EXPECT_EQ(start.Rest(), u" ");
}

TEST(ConverterCommand, tag_needs_a_value_but_no_name) {
    const struct {
        const char16_t *name, *value, *rest;
    } rows[] = {{u"", u"v", u" -tag=\"=v\" "},
                {u"n", u"", u" "},
                {u"", u"", u" "},
                {u"n", u"v", u" -tag=\"n=v\" "},
                {u"a\"b", u"\"c\"", u" -tag=\"a{qt}b={qt}c{qt}\" "},
                {u"a=b", u"\"", u" -tag=\"a=b={qt}\" "},
                {u"n", u"two\r\nlines", u" -tag=\"n=two\r\nlines\" "}};
    for (const auto& row : rows) {
        Command start;
        start.tags.Add(row.name, row.value);
        EXPECT_EQ(start.Rest(), row.rest);
    }
}

TEST(ConverterCommand, empty_settings_leave_the_last_blank) {
    EXPECT_EQ(Command().Text().back(), u' ');
}

TEST(ConverterCommand, quotes_outside_of_tags_stay_and_end_their_value_early) {
    Command start;
    start.encoder.Create(u"W\"V", 0, nullptr, start.Log(), u"\"");
    start.encoder.StartThisEncoder(u"a\"b", u"\"", u"-s=\"", true, start.tags);
    const std::u16string text = start.launch.command;
    EXPECT_TRUE(text.starts_with(u" -infile=\"a\"b\" -outfile=\"\"\" -convert_to=\"W\"V\" -evtquit=\""))
        << text.size();
    EXPECT_TRUE(text.ends_with(u" \" -s=\""));
}

TEST(ConverterCommand, no_length_is_too_long) {
    Command start;
    const std::u16string settings(100000, u's');
    for (int index = 0; index < 2000; ++index) start.tags.Add(u"name", std::u16string(100, u'v').c_str());
    start.Start(settings.c_str());
    EXPECT_EQ(CountOf(start.launch.command, u" -tag=\"name=" + std::u16string(100, u'v') + u"\""), 2000u);
    EXPECT_TRUE(start.launch.command.ends_with(u"\" " + settings));
    EXPECT_LT(start.launch.line.size(), 1000u);
}

TEST(ConverterCommand, line_names_the_program_beside_the_library_and_the_file) {
    Command start;
    start.Start();
    XString program = paths::GetModuleFolder(nullptr);
    program.Append(platform::kConverterFileName);
    EXPECT_EQ(start.launch.line,
              u"\"" + std::u16string(program.Text()) + u"\" -qvcmd=\"" + start.launch.commandFile + u"\"");
    EXPECT_TRUE(FileExists(start.launch.commandFile));
}

TEST(ConverterCommand, file_stays_until_the_next_start_or_the_end) {
    std::u16string first, second;
    {
        Command start;
        Faulty<platform::GetTempFileNameW> names;
        start.Start();
        first = start.launch.commandFile;
        EXPECT_TRUE(FileExists(first));
        start.Start();
        second = start.launch.commandFile;
        EXPECT_TRUE(FileExists(second));
        EXPECT_EQ(names.Calls(), 2);
        EXPECT_TRUE(second == first || !FileExists(first));  // the system may give the name again
    }
    EXPECT_FALSE(FileExists(second));
}

TEST(ConverterCommand, file_that_the_converter_has_deleted_is_no_matter) {
    Command start;
    start.Start();
    EXPECT_TRUE(platform::DeleteFileW(start.launch.commandFile.c_str()));
    start.Start();
    EXPECT_EQ(start.launch.count, 2);
    EXPECT_EQ(start.errors.Text(), u"Error running Quavercore\r\nError running Quavercore\r\n");
}

TEST(ConverterCommand, file_that_cannot_be_opened_is_told_and_the_converter_started_all_the_same) {
    Command start;
    start.tags.Add(u"n", u"v");
    Faulty<platform::CreateFileW> files;
    files.FailAlways(platform::kInvalidHandle);
    start.Start();
    EXPECT_EQ(start.launch.count, 1);
    EXPECT_EQ(start.launch.command, u"");
    EXPECT_EQ(start.errors.Text(), u"Error creating qvcmd temporary file '" + start.launch.commandFile +
                                       u"'\r\nError running Quavercore\r\n");
    EXPECT_EQ(CountOf(start.trace.Text(), u"ReplaceQuotes"), 0u);  // no text was built
}

TEST(ConverterCommand, file_that_is_written_short_is_told_and_the_converter_started_all_the_same) {
    Command start;
    const platform::Handle channels[] = {start.errors.Channel(), start.information.Channel(),
                                         start.trace.Channel()};
    Faulty<platform::WriteFile> writes;
    writes.Replace(
        [&](platform::Handle file, const void* bytes, std::uint32_t count, std::uint32_t* written) {
            for (const platform::Handle channel : channels) {
                if (file == channel) return writes.Native(file, bytes, count, written);
            }
            return writes.Native(file, bytes, count / 2, written);
        });
    start.Start();
    EXPECT_EQ(start.launch.count, 1);
    EXPECT_GT(start.launch.commandBytes.size(), 10u);
    EXPECT_EQ(start.errors.Text(), u"Error creating qvcmd temporary file '" + start.launch.commandFile +
                                       u"'\r\nError running Quavercore\r\n");
}

TEST(ConverterEvents, are_unnamed_before_the_first_run) {
    Faulty<platform::CreateEventW> events;
    std::vector<bool> named;
    events.Replace([&](const char16_t* name) {
        named.push_back(name != nullptr);
        return events.Native(name);
    });
    const CPUEncoder encoder;
    EXPECT_EQ(named, (std::vector<bool>{false, false}));
}

TEST(ConverterEvents, are_named_after_the_tick_in_signed_decimal) {
    TestClock clock;
    Command start;
    const std::uint32_t tick = clock.Now();
    start.Start();
    EXPECT_EQ(start.launch.Value(u" -evtquit"), u"qvevt-cancel-" + SignedDecimal(tick));
    EXPECT_EQ(start.launch.Value(u" -evtwatchdog"), u"qvevt-watch-" + SignedDecimal(tick + 1));
    EXPECT_EQ(start.launch.Value(u" -evtquit").find(u"qvevt-cancel--"), 0u);
}

TEST(ConverterEvents, live_until_the_next_start) {
    TestClock clock;
    Command start;
    start.Start();
    const std::u16string cancel = start.launch.Value(u" -evtquit"),
                         watch = start.launch.Value(u" -evtwatchdog");
    EXPECT_TRUE(Exists(cancel));
    EXPECT_TRUE(Exists(watch));
    start.Start();
    EXPECT_FALSE(Exists(cancel));
    EXPECT_FALSE(Exists(watch));
}

TEST(ConverterEvents, go_with_the_object) {
    std::u16string cancel, watch;
    {
        Command start;
        start.Start();
        cancel = start.launch.Value(u" -evtquit");
        watch = start.launch.Value(u" -evtwatchdog");
    }
    EXPECT_FALSE(Exists(cancel));
    EXPECT_FALSE(Exists(watch));
}

TEST(ConverterEvents, cancel_name_that_is_taken_is_tried_until_the_tick_moves) {
    Command start;
    const std::uint32_t taken = TestClock::Somewhere();
    const platform::Handle held = platform::CreateEventW((u"qvevt-cancel-" + SignedDecimal(taken)).c_str());
    int asked = 0;
    Faulty<platform::GetTickCount> clock;
    clock.Replace([&] { return asked++ < 5 ? taken : taken + 1; });
    Faulty<platform::CreateEventW> events;
    start.Start();
    EXPECT_EQ(start.launch.Value(u" -evtquit"), u"qvevt-cancel-" + SignedDecimal(taken + 1));
    EXPECT_EQ(events.Calls(), 7);  // five that found it taken, the one that did not, the watchdog's
    EXPECT_NE(platform::WaitForSingleObject(held, 0), platform::kWaitFailed);
    platform::CloseHandle(held);
}

TEST(ConverterEvents, watchdog_name_that_is_taken_is_shared_after_one_attempt) {
    Command start;
    TestClock clock;
    const std::u16string name =
        u"qvevt-watch-" + SignedDecimal(clock.Now() + 1);  // the cancel event comes first
    const platform::Handle held = platform::CreateEventW(name.c_str());
    Faulty<platform::CreateEventW> events;
    start.Start();
    EXPECT_EQ(start.launch.Value(u" -evtwatchdog"), name);
    EXPECT_EQ(events.Calls(), 2);
    platform::CloseHandle(held);
    EXPECT_TRUE(Exists(name));  // kept by the encoder
}

TEST(ConverterEvents, error_left_by_somebody_else_is_not_taken_for_a_collision) {
    Command start;
    Faulty<platform::CreateEventW> events;
    events.Replace([&](const char16_t* name) {
        EXPECT_EQ(platform::GetLastError(), platform::kErrorSuccess);
        return events.Native(name);
    });
    platform::SetLastError(platform::kErrorAlreadyExists);
    start.Start();
    EXPECT_EQ(events.Calls(), 2);
}

TEST(ConverterEvents, that_cannot_be_made_do_not_stop_a_start) {
    Command start;
    Faulty<platform::CreateEventW> events;
    events.FailAlways(platform::kNullHandle);
    start.Start();
    EXPECT_EQ(start.launch.count, 1);
    EXPECT_TRUE(start.launch.Value(u" -evtquit").starts_with(u"qvevt-cancel-"));
    EXPECT_TRUE(start.launch.Value(u" -evtwatchdog").starts_with(u"qvevt-watch-"));
}
