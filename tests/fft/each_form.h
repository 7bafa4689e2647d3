// Tests that are run in the form for each instruction set.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/instruction_sets.h"

class InEachForm : public testing::TestWithParam<InstructionSet> {
    const ForcedSet mSet{GetParam()};
};

inline std::string NameOfForm(const testing::TestParamInfo<InstructionSet>& form) {
    const char* const names[] = {"Plain", "Sse2", "Avx2", "Avx512"};
    return names[static_cast<int>(form.param)];
}
