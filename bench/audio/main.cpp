// The audio work of the library beside its peers:
//
//     qv_bench_audio [--short] [--table FILE] [--set SET] [GROUP...]
//
// A row is one contestant: the time of the work, and how many times ours that is, so above 1 ours is the faster one.
// Behind it stands what is asked, where something is. SET is an instruction set that ours is held to (plain, sse2, avx2,
// avx512); the peers choose for themselves.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench/audio/groups.h"
#include "processor/instruction_set.h"

namespace {

struct Group {
    const char* name;
    void (*run)(Racecourse&);
};

constexpr Group kGroups[] = {
    {"fft", RaceTransforms}, {"growth", MeasureGrowth},  {"resample", RaceResampling},
    {"design", RaceDesigns}, {"identity", RaceIdentity}, {"mix", RaceMixing},
    {"depth", RaceDepths},
};

constexpr const char* kSets[kInstructionSets] = {"plain", "sse2", "avx2", "avx512"};

bool Force(const std::string& name) {
    for (std::size_t i = 0; i < kInstructionSets; ++i)
        if (name == kSets[i]) return ForceInstructionSet(static_cast<InstructionSet>(i));
    return false;
}

int Usage() {
    std::fprintf(stderr, "usage: qv_bench_audio [--short] [--table FILE] [--set SET] [GROUP...]; groups:");
    for (const Group& group : kGroups) std::fprintf(stderr, " %s", group.name);
    std::fprintf(stderr, "\n");
    return 2;
}

const Group* Find(const std::string& name) {
    for (const Group& group : kGroups)
        if (name == group.name) return &group;
    return nullptr;
}

// What the system says in words: a single number where one core is allowed.
bool IsHeldToOneCore() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "Cpus_allowed_list:") {
    }
    status >> word;
    return word.find_first_of(",-") == std::string::npos;
}

}  // namespace

int main(int argc, char** argv) {
    bool isShort = false;
    std::string table;
    std::vector<const Group*> wanted;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--short") {
            isShort = true;
        } else if (word == "--table" && i + 1 < argc) {
            table = argv[++i];
        } else if (word == "--set" && i + 1 < argc) {
            if (!Force(argv[++i])) return Usage();
        } else if (const Group* const group = Find(word)) {
            wanted.push_back(group);
        } else {
            return Usage();
        }
    }
    if (wanted.empty())
        for (const Group& group : kGroups) wanted.push_back(&group);
    if (!IsHeldToOneCore())
        std::printf(
            "Not held to one core (taskset -c 0 does that): the figures move more than they need to.\n");
    std::printf("Instruction set of ours: %s\n", kSets[static_cast<std::size_t>(InstructionSetInUse())]);
    Racecourse course(isShort, table);
    for (const Group* const group : wanted) group->run(course);
    course.Summarise();
    return 0;
}
