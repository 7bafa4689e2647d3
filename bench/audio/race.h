// How the audio work is measured: the contestants of a race do the same work in turn, round after round, so that
// all of them see the same machine in the same moods. A lap repeats the work until it lasts long enough for the
// clock, which is the processor's own; what counts is the median of a contestant's laps.
//
// A race asserts no time. It does stop the program when `check` finds that somebody didn't do the work: nobody shall
// measure a refusal.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Contestant {
    std::string name;
    std::function<void()> work;
};

// What is asked of the first contestant: the peer's time divided by its own. 0 where nothing is.
struct Demand {
    std::string peer;
    double must = 0;
    double aim = 0;
};

struct Race {
    std::string work;
    std::vector<Contestant> contestants;  // ours first
    std::vector<Demand> demands;
    // After each contestant has done the work once, in order. Says what is wrong with the results, or nothing.
    std::function<std::string()> check = [] { return std::string(); };
};

// The median times of a work, in seconds, in the order of the contestants.
using Times = std::vector<double>;

class Racecourse {
  public:
    // A short run shows that everything works; its figures are rough and judged by nothing. Every row goes to `table` too, tab-separated
    // without the prose, unless its name is empty.
    Racecourse(bool isShort, const std::string& table);
    Racecourse(const Racecourse&) = delete;
    Racecourse& operator=(const Racecourse&) = delete;
    ~Racecourse();

    bool IsShort() const { return isShort_; }
    // Begins a group: what is raced, and the configuration of everybody who takes part, a line each.
    void Announce(const std::string& title, const std::vector<std::string>& lines);
    // Runs, prints a row for each contestant with the demand on it, and returns the times.
    Times Run(const Race& race);
    // A row of the table: what was measured, in seconds or what `who` names, and how many times ours that is.
    void Record(const std::string& work, const std::string& who, double value, double ratio);
    // How many demands were met, and a line for each that was not.
    void Summarise() const;

  private:
    std::string Verdict(const std::string& work, double ratio, const Demand& demand);

    bool isShort_;
    std::FILE* table_ = nullptr;
    std::string title_;
    int demands_ = 0;
    std::vector<std::string> missed_;
};

// Ends the program with a message: the results are not what they must be.
[[noreturn]] void Fail(const std::string& why);

// Seconds of the processor's time that this process has used.
double SecondsOfProcessor();
