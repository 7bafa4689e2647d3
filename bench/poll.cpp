// The cost of one QACGetProgress: without a run, beside a converter that says nothing, and for a megabyte of
// a converter's text, from the first poll to the one that has seen all of it.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "interface/converter.h"
#include "platform/clock.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/program.h"
#include "quavermill/quavermill.h"
#include "support/child.h"

namespace {

constexpr int kFloodLines = 5000;  // of 105 units: a little over a megabyte

void SayFrom(platform::Handle stream, const std::u16string& text) {
    std::uint32_t written = 0;
    platform::WriteFile(stream, text.data(), static_cast<std::uint32_t>(2 * text.size()), &written);
}

// Lives until it is ended.
CHILD_PROGRAM(Silent) {
    platform::Sleep(600000);
    return 0;
}

CHILD_PROGRAM(Flood) {
    const platform::Handle output = platform::GetStdHandle(platform::kStdOutput);
    const std::u16string line = u"MSGTO: somebody else: " + std::u16string(81, u'x') + u"\r\n";
    for (int i = 0; i < kFloodLines; ++i) SayFrom(output, line);
    SayFrom(output, u"MSGTO: qMC: PCDone: 50\r\n");
    platform::Sleep(600000);
    return 0;
}

const char* gChild = "Silent";
platform::Handle gProcess = platform::kInvalidHandle;

// A run whose converter is a child program of this benchmark.
class Run {
  public:
    explicit Run(const char* child) {
        gChild = child;
        platform::CreateProcessW.Substitute([](char16_t*, std::uint32_t flags,
                                               const platform::ChildStreams& streams,
                                               platform::ChildHandles* handles) {
            std::u16string line = child::CommandLine(gChild);
            const bool started = platform::CreateProcessW.Native()(line.data(), flags, streams, handles);
            gProcess = handles->process;
            return started;
        });
        converter.ConvertAudio(u"a", u"b", u"c", u"");
    }
    ~Run() {
        platform::TerminateProcess(gProcess);
        platform::CreateProcessW.Substitute(nullptr);
    }

    clConverter converter;
};

std::uint32_t Poll(clConverter& converter) {
    std::uint32_t percent = 0;
    converter.GetProgress(&percent);
    return percent;
}

void PollWithoutRun(benchmark::State& state) {
    clConverter converter;
    for (auto _ : state) benchmark::DoNotOptimize(Poll(converter));
}
BENCHMARK(PollWithoutRun);

void PollWithNothingWaiting(benchmark::State& state) {
    Run run("Silent");
    for (auto _ : state) benchmark::DoNotOptimize(Poll(run.converter));
}
BENCHMARK(PollWithNothingWaiting);

void PollsForAMegabyte(benchmark::State& state) {
    std::int64_t polls = 0;
    for (auto _ : state) {
        state.PauseTiming();
        {
            Run run("Flood");
            platform::Sleep(20);  // the pipe is full by then
            state.ResumeTiming();
            do ++polls;
            while (Poll(run.converter) < 50);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.counters["polls"] =
        benchmark::Counter(static_cast<double>(polls), benchmark::Counter::kAvgIterations);
    state.SetBytesProcessed(state.iterations() * kFloodLines * 105 * 2);
}
BENCHMARK(PollsForAMegabyte)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strncmp(argv[1], "--child=", 8) == 0)
        return child::Run(argv[1] + 8, argc - 2, argv + 2);
    XLog::StartUp();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
