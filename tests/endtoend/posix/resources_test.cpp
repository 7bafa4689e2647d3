// What only the kernel's books show: zombies, resident memory, and what many idle handles cost.
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "endtoend/conversion.h"
#include "endtoend/converters.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "foundation/pipe.h"
#include "platform/clock.h"
#include "platform/pipe.h"
#include "support/effort.h"
#include "support/handle_gauge.h"

namespace fs = std::filesystem;

namespace {

using Resources = Stage;

constexpr bool kMeasures =
    kEffort == Effort::kPlain;  // sanitizers keep freed memory and take time of their own

constexpr std::size_t kHandles = 500;

// Ended children of this process whose end nobody took notice of.
int Zombies() {
    const std::string self = fs::read_symlink("/proc/self").string();
    int zombies = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
        std::string line;
        std::getline(std::ifstream(entry.path() / "stat"), line);
        const std::size_t name = line.rfind(')');
        if (name != std::string::npos && line.substr(name + 1).starts_with(" Z " + self + " ")) ++zombies;
    }
    return zombies;
}

std::int64_t ResidentKiB() {
    std::int64_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * 4;
}

// As many open files as the system lets this process have.
void AllowManyFiles() {
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_GE(limit.rlim_cur, 4000u);
}

// What this process takes of a core while its host sleeps.
double ShareOfACore() {
    constexpr int kSeconds = 2;
    const std::clock_t start = std::clock();
    std::this_thread::sleep_for(std::chrono::seconds(kSeconds));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / kSeconds;
}

// What it takes only to look at so many pipes at every tick.
class BareLooking {
  public:
    explicit BareLooking(std::size_t pipes) : mPipes(pipes) {
        for (XPipe& pipe : mPipes) EXPECT_TRUE(pipe.Create());
        mThread = std::thread([this] {
            while (!mEnd) Look();
        });
    }
    ~BareLooking() {
        mEnd = true;
        mThread.join();
    }
    BareLooking(const BareLooking&) = delete;
    BareLooking& operator=(const BareLooking&) = delete;

  private:
    void Look() {
        std::uint32_t waiting = 0;
        for (const XPipe& pipe : mPipes) platform::PeekNamedPipe(pipe.ReadHandle(), &waiting);
        platform::Sleep(10);
    }

    std::vector<XPipe> mPipes;
    std::atomic<bool> mEnd = false;
    std::thread mThread;
};

double ShareOfBareLooking(std::size_t pipes) {
    const BareLooking looking(pipes);
    return ShareOfACore();
}

}  // namespace

TEST_F(Resources, A_thousand_conversions_take_no_more_memory_than_a_hundred_and_leave_nothing) {
    const std::u16string source = files.Write(u"in.wav", Recording(20000)), destination = files / u"out.wav";
    Host host(library);
    ASSERT_TRUE(host.Convert({source, destination}).Succeeded());
    const HandleGauge before;
    const int zombies = Zombies();
    std::int64_t afterHundred = 0;
    for (int number = 2; number <= Times(1000, 110, 0); ++number) {
        ASSERT_TRUE(host.Convert({source, destination}).Succeeded()) << number;
        if (number == 100) afterHundred = ResidentKiB();
    }
    const std::int64_t more = ResidentKiB() - afterHundred;
    std::printf("%lld KiB more than after 100 conversions\n", static_cast<long long>(more));
    if (kMeasures) {
        EXPECT_LE(more, 256);
    }
    EXPECT_EQ(HandleGauge(), before);
    EXPECT_EQ(Zombies(), zombies);
    EXPECT_TRUE(HaveSameAudio(source, destination));
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
}

TEST_F(Resources, Conversions_abandoned_with_their_handles_leave_no_zombie) {
    const std::u16string source = files.Write(u"in.wav", Recording(2000000));
    const int zombies = Zombies();
    for (int number = 0; number < 10; ++number) {
        const std::string digit = std::to_string(number);
        Host(library).Start(
            {source, files / (u"out" + std::u16string(digit.begin(), digit.end()) + u".wav")});
    }
    EXPECT_TRUE(Eventually([&] { return ConvertersOf(temporaries.Path()).empty() && Zombies() == zombies; }));
}

// On a machine that has other work as well, the same takes longer: caches are cold and cores are shared. What
// looking at the pipes costs there without the library is the measure then.
TEST_F(Resources, Five_hundred_idle_handles_cost_next_to_nothing) {
    AllowManyFiles();
    library.QACDestroy(library.QACCreate());
    const HandleGauge before;
    const double bare = ShareOfBareLooking(2 * kHandles);
    std::vector<QvConverter*> converters(kHandles);
    for (QvConverter*& converter : converters) converter = library.QACCreate();
    EXPECT_LE(HandleGauge().threads, before.threads + 2);
    const double share = ShareOfACore();
    std::printf("500 idle handles take %.2f %% of a core, bare looking at their pipes %.2f %%\n",
                share * 100.0, bare * 100.0);
    if (kMeasures) {
        EXPECT_LT(share, std::max(0.05, 2.5 * bare));
    }
    for (QvConverter* converter : converters) library.QACDestroy(converter);
    EXPECT_EQ(HandleGauge(), before);
}
