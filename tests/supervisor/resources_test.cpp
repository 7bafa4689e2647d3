// What is given back: handles after whatever end, and memory when there was too little of it.
#include <gtest/gtest.h>

#include <optional>

#include "platform/file.h"
#include "supervisor/active_run.h"
#include "support/allocation_faults.h"
#include "support/handle_gauge.h"

namespace {

// Refuses to start anything and takes no memory for it. The streams have nobody else to close them.
bool Refuse(char16_t*, std::uint32_t, const platform::ChildStreams& streams, platform::ChildHandles*) {
    platform::CloseHandle(streams.output);
    platform::CloseHandle(streams.error);
    return false;
}

struct Refusal {
    Refusal() { platform::CreateProcessW.Substitute(&Refuse); }
    ~Refusal() { platform::CreateProcessW.Substitute(nullptr); }
};

// An encoder whose life begins short of memory and ends when there is enough again.
struct Life {
    explicit Life(int call) { memory.FailCall(call); }

    template <class Scenario>
    void Run(Scenario scenario) {
        try {
            encoder.emplace();
            scenario(*encoder);
        } catch (const std::bad_alloc&) {
        }
        failed = memory.HasFailed();
        memory.FailCall(1 << 30);
    }

    AllocationFaults memory;
    std::optional<CPUEncoder> encoder;
    bool failed = false;
};

// All texts outgrow the room inside a string.
void PrepareAndStart(CPUEncoder& encoder, const char16_t* text, const clIDTagList& tags) {
    encoder.Create(text, 1, nullptr, XLog(), text);
    encoder.ServiceCLI(false, false, 1);
    encoder.StartThisEncoder(text, text, text, false, tags);
    encoder.ServiceCLI(false, true, 2);
}

// Whether there come to be no more handles and threads than then, within a minute.
bool NoMoreThan(const HandleGauge& before) {
    for (const std::uint32_t start = platform::GetTickCount(); platform::GetTickCount() - start < 60000;) {
        const HandleGauge now;
        if (now.freshest <= before.freshest && now.threads <= before.threads) return true;
        platform::Sleep(1);
    }
    return false;
}

constexpr std::u16string_view kMessage = u"MSGTO: qMC: PCDone: 55\r\n";

std::uint32_t Size(std::u16string_view text) {
    return static_cast<std::uint32_t>(2 * text.size());
}

}  // namespace

// A child that was left alone ends a little later, and what the platform holds for it goes with it.
TEST(SupervisorResources, runs_leave_no_handle_behind_however_they_end) {
    HandleGauge before;
    for (int round = 0; round < 3; ++round) {
        {
            ActiveRun ended("leaves");
            EXPECT_TRUE(ended.owner.PollUntilEnd());
            ended.owner.Create();
            ended.owner.Start();
            EXPECT_TRUE(ended.owner.PollUntilEnd());
        }
        {
            ActiveRun givenUp("hangs");
            givenUp.clock.Advance(60001);
            givenUp.owner.Poll();
            EXPECT_TRUE(givenUp.owner.encoder.Finished());
        }
        { const ActiveRun destroyed("hangs"); }
        if (round == 0) before = HandleGauge();  // with what the first run makes once for all
        EXPECT_TRUE(NoMoreThan(before));
    }
}

TEST(SupervisorResources, start_that_runs_out_of_memory_leaves_nothing_behind) {
    const Refusal refusal;
    const std::u16string text(300, u'"');
    clIDTagList tags;
    tags.Add(text.c_str(), text.c_str());
    bool failed = true;
    for (int call = 1; failed; ++call) {
        int live = 0;
        const HandleGauge before;
        {
            Life life(call);
            life.Run([&](CPUEncoder& encoder) { PrepareAndStart(encoder, text.c_str(), tags); });
            failed = life.failed;
            life.encoder.reset();
            live = life.memory.Live();
        }
        EXPECT_EQ(live, 0) << call;
        EXPECT_TRUE(NoMoreThan(before)) << call;
        EXPECT_TRUE(failed || call > 20);
    }
}

TEST(SupervisorResources, bytes_for_which_there_is_no_memory_are_dropped) {
    CPUEncoder encoder;
    bool failed = false;
    {
        AllocationFaults memory;
        memory.FailCall(1);
        encoder.TakeText(CPUEncoder::Stream::kOutput, kMessage.data(), Size(kMessage));
        failed = memory.HasFailed();
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(encoder.Percent(), 0);
    encoder.TakeText(CPUEncoder::Stream::kOutput, kMessage.data(), Size(kMessage));
    EXPECT_EQ(encoder.Percent(), 55);
}

TEST(SupervisorResources, messages_that_run_out_of_memory_leave_an_object_that_goes_on) {
    const std::u16string text =
        u"MSGTO: qMC: Action: " + std::u16string(300, u'a') + u"\r\n" + std::u16string(300, u'i');
    bool failed = true;
    for (int call = 1; failed; ++call) {
        std::int32_t percent = 0;
        {
            Life life(call);
            life.Run([&](CPUEncoder& encoder) {
                encoder.TakeText(CPUEncoder::Stream::kOutput, text.data(), Size(text));
                encoder.ServiceCLI(false, false, 0);
            });
            failed = life.failed;
            if (!life.encoder) continue;
            life.encoder->TakeText(CPUEncoder::Stream::kOutput, kMessage.data(), Size(kMessage));
            percent = life.encoder->Percent();
        }
        EXPECT_EQ(percent, 55) << call;
        EXPECT_TRUE(failed || call > 5);
    }
}
