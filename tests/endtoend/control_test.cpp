// A conversion under way: cancelled, held, made to wait its turn. The source is vast and takes no room, so
// there is time to do so.
#include "endtoend/conversion.h"
#include "endtoend/converters.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

namespace {

constexpr std::uint32_t kMebibyte = 1 << 20;
constexpr int kManyPolls = 60;

class RunningConversion : public Stage {
  protected:
    // Starts a conversion of so many MiB and polls until it is on its way.
    void Begin(std::uint32_t mebibytes) {
        WriteVastRecording(source, mebibytes * kMebibyte);
        outcome = host.Start({source, destination});
        while (outcome.Percent() == 0 && host.Poll(outcome)) {
        }
        ASSERT_LT(outcome.Percent(), 100u) << testing::PrintToString(outcome.errors);
    }

    // Polls until what was on its way has arrived and the percentage stands.
    void PollUntilStill() {
        for (int still = 0; still < 10 && !outcome.ended;) {
            const std::uint32_t former = outcome.Percent();
            host.Poll(outcome);
            still = outcome.Percent() == former ? still + 1 : 0;
        }
    }

    void ExpectCancelled() {
        host.Finish(outcome);
        EXPECT_TRUE(outcome.ended);
        EXPECT_EQ(outcome.errors, u"");
        EXPECT_TRUE(outcome.Says(u"Conversion cancelled"));
        EXPECT_FALSE(outcome.Says(u"Conversion complete"));
    }

    const std::u16string source = files / u"vast.wav", destination = files / u"out.wav";
    Host host{library};
    Outcome outcome;
};

}  // namespace

TEST_F(RunningConversion, Ends_when_cancelled_and_leaves_nothing) {
    Begin(3072);
    EXPECT_EQ(library.QACSetCancelled(host.Handle()), QV_DONE);
    ExpectCancelled();
    EXPECT_EQ(NamesIn(files.Path()), std::set<std::u16string>{u"vast.wav"});
}

TEST_F(RunningConversion, Leaves_an_existing_destination_alone_when_cancelled) {
    const std::string old = Recording(1000, 7);
    files.Write(u"out.wav", old);
    Begin(3072);
    library.QACSetCancelled(host.Handle());
    ExpectCancelled();
    EXPECT_EQ(files.Read(u"out.wav"), old);
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"out.wav", u"vast.wav"}));
}

TEST_F(RunningConversion, Stands_still_while_held_and_goes_on_to_a_right_end) {
    Begin(256);
    EXPECT_EQ(library.QACSetPause(host.Handle(), 1), QV_DONE);
    PollUntilStill();
    ASSERT_LT(outcome.Percent(), 100u);
    const std::uint32_t held = outcome.Percent();
    for (int poll = 0; poll < kManyPolls; ++poll) {
        host.Poll(outcome);
        EXPECT_EQ(outcome.Percent(), held);
    }
    EXPECT_EQ(library.QACSetPause(host.Handle(), 0), QV_DONE);
    host.Finish(outcome);
    EXPECT_TRUE(outcome.Succeeded()) << testing::PrintToString(outcome.errors);
    EXPECT_TRUE(HaveSameAudio(source, destination));
}

TEST_F(RunningConversion, Ends_when_it_goes_on_after_a_cancel_while_held) {
    Begin(1024);
    library.QACSetPause(host.Handle(), 1);
    PollUntilStill();
    library.QACSetCancelled(host.Handle());
    const std::uint32_t held = outcome.Percent();
    for (int poll = 0; poll < kManyPolls; ++poll) {
        EXPECT_TRUE(host.Poll(outcome));
        EXPECT_EQ(outcome.Percent(), held);
    }
    library.QACSetPause(host.Handle(), 0);
    ExpectCancelled();
    EXPECT_EQ(NamesIn(files.Path()), std::set<std::u16string>{u"vast.wav"});
}

TEST_F(RunningConversion, Takes_every_priority_and_no_other) {
    Begin(256);
    for (const std::uint32_t priority : {1u, 2u, 3u, 0u}) {
        EXPECT_EQ(library.QACSetPriority(host.Handle(), priority), QV_DONE) << priority;
        host.Poll(outcome);
    }
    EXPECT_EQ(library.QACSetPriority(host.Handle(), 4), QV_NOTHING);
    host.Finish(outcome);
    EXPECT_TRUE(outcome.Succeeded()) << testing::PrintToString(outcome.errors);
    EXPECT_TRUE(HaveSameAudio(source, destination));
}

TEST_F(RunningConversion, Is_not_cancelled_by_what_came_before_it) {
    EXPECT_EQ(library.QACSetCancelled(host.Handle()), QV_DONE);
    host.Poll(outcome);
    EXPECT_EQ(outcome.Percent(), 0u);
    const std::u16string small = files.Write(u"small.wav", Recording(100000));
    EXPECT_TRUE(host.Convert({small, destination}).Succeeded());
    library.QACSetCancelled(host.Handle());
    EXPECT_TRUE(host.Convert({small, destination}).Succeeded());
    EXPECT_TRUE(HaveSameAudio(small, destination));
}

TEST_F(RunningConversion, Is_left_to_itself_by_a_host_that_goes) {
    WriteVastRecording(source, 64 * kMebibyte);
    {
        Host hasty(library);
        outcome = hasty.Start({source, destination});
        while (outcome.Percent() == 0 && hasty.Poll(outcome)) {
        }
    }
    EXPECT_TRUE(
        Eventually([this] { return files.Has(u"out.wav") && ConvertersOf(temporaries.Path()).empty(); }));
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"out.wav", u"vast.wav"}));
    EXPECT_TRUE(HaveSameAudio(source, destination));
}
