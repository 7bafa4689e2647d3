// What only the kernel's books show: zombies, resident memory, and what many idle handles cost.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "endtoend/conversion.h"
#include "endtoend/converters.h"
#include "endtoend/effort.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "support/handle_gauge.h"

namespace fs = std::filesystem;

namespace {

using Resources = Stage;

constexpr bool kMeasures =
    kEffort == Effort::kPlain;  // sanitizers keep freed memory and take time of their own

constexpr double kAllowedShare = 0.05;

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

// What this process takes of it while its host sleeps. Whatever else runs on the machine makes the same work
// take longer and never shorter, so the least of some is the truest.
double ShareOfACore() {
    constexpr int kSeconds = 2;
    const std::clock_t start = std::clock();
    std::this_thread::sleep_for(std::chrono::seconds(kSeconds));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / kSeconds;
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

TEST_F(Resources, Five_hundred_idle_handles_cost_next_to_nothing) {
    AllowManyFiles();
    library.QACDestroy(library.QACCreate());
    const HandleGauge before;
    std::vector<QvConverter*> converters(500);
    for (QvConverter*& converter : converters) converter = library.QACCreate();
    EXPECT_LE(HandleGauge().threads, before.threads + 2);
    double share = 1.0;
    for (int look = 0; look < 10 && share >= kAllowedShare; ++look) share = std::min(share, ShareOfACore());
    std::printf("500 idle handles take %.2f %% of a core\n", share * 100.0);
    if (kMeasures) {
        EXPECT_LT(share, kAllowedShare);
    }
    for (QvConverter* converter : converters) library.QACDestroy(converter);
    EXPECT_EQ(HandleGauge(), before);
}
