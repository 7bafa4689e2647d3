// Every instruction set that the processor offers, in turn: those above the one it has can't be tested on it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "processor/instruction_set.h"

inline std::string NameOf(InstructionSet set) {
    const char* const names[] = {"plain", "SSE2", "AVX2", "AVX-512"};
    return names[static_cast<int>(set)];
}

inline std::vector<InstructionSet> OfferedSets() {
    std::vector<InstructionSet> sets;
    for (int set = 0; set <= static_cast<int>(BestInstructionSet()); ++set)
        sets.push_back(static_cast<InstructionSet>(set));
    return sets;
}

// Forces a set for a scope.
class ForcedSet {
  public:
    explicit ForcedSet(InstructionSet set) { EXPECT_TRUE(ForceInstructionSet(set)); }
    ForcedSet(const ForcedSet&) = delete;
    ForcedSet& operator=(const ForcedSet&) = delete;
    ~ForcedSet() { ForceInstructionSet(mBefore); }

  private:
    const InstructionSet mBefore = InstructionSetInUse();
};
