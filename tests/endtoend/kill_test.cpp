// The converter, and quaver with it, killed at random moments of a conversion: whoever looks at the
// destination finds what was there before or all of the new file, and what a killed converter leaves beside
// it is gone after the next one.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <random>

#include "endtoend/conversion.h"
#include "endtoend/converters.h"
#include "endtoend/program.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "foundation/log.h"
#include "interface/converter.h"
#include "interface/module_handle.h"
#include "platform/clock.h"
#include "platform/file.h"
#include "platform/synchronisation.h"
#include "support/effort.h"
#include "support/faults.h"

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kKills = Times(200, 40, 40);
constexpr std::size_t kAudioBytes = std::size_t{16} << 20;

Milliseconds Since(std::chrono::steady_clock::time_point start) {
    return std::chrono::steady_clock::now() - start;
}

// The library's logic within this program, in place of the file, so that the converter's process is at hand.
// It looks for the converter where the file is.
class OwnConverter {
  public:
    explicit OwnConverter(platform::ModuleHandle library) {
        XLog::StartUp();
        gModuleHandle = library;
        mStarts.Replace([this](char16_t* line, std::uint32_t flags, const platform::ChildStreams& streams,
                               platform::ChildHandles* child) {
            const bool started = mStarts.Native(line, flags, streams, child);
            mProcess = child->process;
            return started;
        });
        mConverter.emplace();
    }
    ~OwnConverter() {
        mConverter.reset();
        gModuleHandle = nullptr;
        XLog::ShutDown();
    }
    OwnConverter(const OwnConverter&) = delete;
    OwnConverter& operator=(const OwnConverter&) = delete;

    void Start(const std::u16string& source, const std::u16string& destination) {
        EXPECT_EQ(mConverter->ConvertAudio(source.c_str(), destination.c_str(), u"Wave", u""), 1);
    }
    bool Poll() {
        std::uint32_t percent = 0;
        mConverter->GetProgress(&percent);
        platform::Sleep(1);
        return percent < 100;
    }
    // Once the end of the process was taken notice of, its handle is closed.
    void Kill() const {
        if (mConverter->encoderProcess.Running()) platform::TerminateProcess(mProcess);
    }

  private:
    Faulty<platform::CreateProcessW> mStarts;
    platform::Handle mProcess = platform::kInvalidHandle;
    std::optional<clConverter> mConverter;
};

class Killed : public Stage {
  protected:
    Killed() : seed(std::random_device()()), random(seed) {
        std::printf("seed %u\n", seed);
        files.Write(u"in.wav", Recording(kAudioBytes, 1));
        files.Write(u"old.wav", kOld);
    }

    // A moment from the start of a run that takes `whole` to somewhat behind its end.
    Milliseconds Moment(Milliseconds whole) {
        return whole * std::uniform_real_distribution<double>(0.0, 1.2)(random);
    }

    // In every other round something stands at the destination already.
    void SetUpRound(int round) const {
        std::filesystem::remove(std::filesystem::path(destination));
        if (round % 2 == 1) files.Write(u"out.wav", kOld);
    }
    void CheckRound(int round) {
        if (!Marks().empty()) ++littered;
        if (HaveSameAudio(source, destination)) return;
        ++unfinished;
        EXPECT_EQ(files.Has(u"out.wav"), round % 2 == 1);
        EXPECT_EQ(files.Read(u"out.wav"), round % 2 == 1 ? kOld : "");
    }

    // The digits of what converters have left or are writing.
    std::set<std::u16string> Marks() const {
        std::set<std::u16string> marks;
        for (const std::u16string& name : NamesIn(files.Path())) {
            if (name.starts_with(u".qvpart-")) marks.insert(name.substr(8, 16));
        }
        return marks;
    }
    // True as long as a converter is at work on any of them.
    bool SomebodyWrites() const {
        for (const std::u16string& mark : Marks()) {
            const platform::Handle event = platform::OpenEventW((u"qvpart-" + mark).c_str());
            if (platform::CloseHandle(event)) return true;
        }
        return false;
    }
    bool GetsQuiet() const {
        return Eventually([this] { return !SomebodyWrites() && ConvertersOf(temporaries.Path()).empty(); });
    }

    void ExpectKilledInTime() const {
        std::printf("%d of %d killed in time, %d with a file left\n", unfinished, kKills, littered);
        EXPECT_GT(unfinished, 0);
    }
    void ExpectSweptByTheNext() const {
        Host host(library);
        EXPECT_TRUE(host.Convert({source, destination}).Succeeded());
        EXPECT_TRUE(Marks().empty());
        EXPECT_TRUE(HaveSameAudio(source, destination));
    }

    const std::string kOld = Recording(1000, 7);
    const std::u16string source = files / u"in.wav", destination = files / u"out.wav";
    const unsigned seed;
    std::mt19937 random;
    int unfinished = 0, littered = 0;
};

}  // namespace

TEST_F(Killed, Converter_leaves_its_destination_absent_or_complete) {
    OwnConverter converter(library.Module());
    Milliseconds whole(0);
    for (int round = -1; round < kKills; ++round) {  // the first is not killed but timed
        const Milliseconds moment = Moment(whole);
        SetUpRound(round);
        const auto start = std::chrono::steady_clock::now();
        converter.Start(source, destination);
        for (bool killed = round < 0; converter.Poll();) {
            if (killed || Since(start) < moment) continue;
            converter.Kill();
            killed = true;
        }
        if (round < 0) whole = Since(start);
        CheckRound(round);
    }
    ExpectKilledInTime();
    ExpectSweptByTheNext();
}

TEST_F(Killed, Quaver_takes_its_converter_with_it) {
    Milliseconds whole(0);
    for (int round = -1; round < kKills; ++round) {
        const Milliseconds moment = Moment(whole);
        SetUpRound(round);
        const auto start = std::chrono::steady_clock::now();
        Quaver quaver({u"convert", u"-q", u"-f", source, destination});
        while (!quaver.HasEnded() && (round < 0 || Since(start) < moment)) platform::Sleep(1);
        if (round < 0) whole = Since(start);
        quaver.Kill();
        ASSERT_TRUE(GetsQuiet()) << round;
        CheckRound(round);
    }
    ExpectKilledInTime();
    ExpectSweptByTheNext();
    // A command file that nobody has come to read is all that is left; and what ThreadSanitizer makes for a moment at a
    // program's start.
    for (const std::u16string& name : NamesIn(temporaries.Path())) {
        EXPECT_TRUE(name.starts_with(u"QvT") || name.starts_with(u"tsan.rodata."))
            << std::filesystem::path(name).string();
        std::filesystem::remove(std::filesystem::path(temporaries.Path()) / name);
    }
}

// A converter left alone would have the time to finish, and would.
TEST_F(Killed, Quaver_leaves_no_converter_that_goes_on) {
    WriteVastRecording(files / u"vast.wav", 3072u << 20);
    Quaver quaver({u"convert", u"-q", files / u"vast.wav", destination});
    ASSERT_TRUE(Eventually([this] { return SomebodyWrites(); }));
    quaver.Kill();
    EXPECT_TRUE(GetsQuiet());
    EXPECT_EQ(Marks().size(), 1u);
    EXPECT_FALSE(files.Has(u"out.wav"));
    ExpectSweptByTheNext();
}
