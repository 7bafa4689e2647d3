#include "bench/audio/race.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

double LapOf(const Contestant& contestant, long repetitions) {
    const double begun = SecondsOfProcessor();
    for (long i = 0; i < repetitions; ++i) contestant.work();
    return (SecondsOfProcessor() - begun) / static_cast<double>(repetitions);
}

// As many repetitions as a lap needs to be long beside the clock's step.
long RepetitionsFor(const Contestant& contestant, double lapSeconds) {
    long repetitions = 1;
    for (double lap = LapOf(contestant, 1); lap * static_cast<double>(repetitions) < lapSeconds;
         lap = LapOf(contestant, repetitions))
        repetitions *= 2;
    return repetitions;
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::string Text(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string TimeText(double seconds) {
    if (seconds >= 1) return Text("%8.3f s ", seconds);
    if (seconds >= 1e-3) return Text("%8.3f ms", seconds * 1e3);
    return Text("%8.3f us", seconds * 1e6);
}

}  // namespace

Racecourse::Racecourse(bool isShort, const std::string& table) : isShort_(isShort) {
    if (table.empty()) return;
    table_ = std::fopen(table.c_str(), "w");
    if (!table_) Fail("can't write " + table);
}

Racecourse::~Racecourse() {
    if (table_) std::fclose(table_);
}

void Racecourse::Announce(const std::string& title, const std::vector<std::string>& lines) {
    title_ = title;
    std::printf("\n%s\n", title.c_str());
    for (const std::string& line : lines) std::printf("    %s\n", line.c_str());
}

Times Racecourse::Run(const Race& race) {
    const double lapSeconds = isShort_ ? 0.0005 : 0.02;
    const int rounds = isShort_ ? 3 : 15;
    for (const Contestant& contestant : race.contestants) contestant.work();
    if (const std::string wrong = race.check(); !wrong.empty()) Fail(race.work + ": " + wrong);

    std::vector<long> repetitions;
    for (const Contestant& contestant : race.contestants)
        repetitions.push_back(RepetitionsFor(contestant, lapSeconds));
    std::vector<std::vector<double>> laps(race.contestants.size());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < laps.size(); ++i)
            laps[i].push_back(LapOf(race.contestants[i], repetitions[i]));

    Times times;
    for (std::vector<double>& of : laps) times.push_back(Median(of));
    std::printf("  %s\n", race.work.c_str());
    for (std::size_t i = 0; i < times.size(); ++i) {
        const std::string& name = race.contestants[i].name;
        const double ratio = times[i] / times[0];
        Record(race.work, name, times[i], ratio);
        std::printf("    %-28s %s", name.c_str(), TimeText(times[i]).c_str());
        if (i > 0) std::printf("  %7.2f", ratio);
        for (const Demand& demand : race.demands) {
            if (demand.peer != name || isShort_) continue;
            std::printf("   %s", Verdict(race.work, ratio, demand).c_str());
        }
        std::printf("\n");
    }
    std::fflush(stdout);
    return times;
}

std::string Racecourse::Verdict(const std::string& work, double ratio, const Demand& demand) {
    std::string text, missed;
    const auto judge = [&](const char* word, double asked) {
        if (asked <= 0) return;
        const bool isMet = ratio >= asked;
        const std::string asking = word + Text(" %.3g", asked);
        text += (text.empty() ? "" : ", ") + asking + (isMet ? " met" : " MISSED");
        if (!isMet) missed += (missed.empty() ? "" : ", ") + asking;
    };
    judge("must", demand.must);
    judge("aim", demand.aim);
    ++demands_;
    if (!missed.empty())
        missed_.push_back(title_ + ", " + work + ": " + Text("%.2f", ratio) + " beside " + demand.peer +
                          ", " + missed);
    return text;
}

void Racecourse::Record(const std::string& work, const std::string& who, double value, double ratio) {
    if (table_)
        std::fprintf(table_, "%s\t%s\t%s\t%.9g\t%.4f\n", title_.c_str(), work.c_str(), who.c_str(), value,
                     ratio);
}

void Racecourse::Summarise() const {
    if (isShort_) {
        std::printf(
            "\nA short run: everybody did the work; the figures are rough, and no demand is judged by "
            "them.\n");
        return;
    }
    std::printf("\n%d demands, %zu not met%s\n", demands_, missed_.size(), missed_.empty() ? "" : ":");
    for (const std::string& line : missed_) std::printf("    %s\n", line.c_str());
}

void Fail(const std::string& why) {
    std::fflush(stdout);
    std::fprintf(stderr, "qv_bench_audio: %s\n", why.c_str());
    std::exit(1);
}

double SecondsOfProcessor() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}
