#include "processor/instruction_set.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/instruction_sets.h"

namespace {

int Plain() {
    return 0;
}
int Sse2() {
    return 1;
}
int Avx2() {
    return 2;
}
int Avx512() {
    return 3;
}

TEST(InstructionSet, Any_processor_of_this_kind_offers_vectors_of_16_bytes) {
    EXPECT_GE(BestInstructionSet(), InstructionSet::Sse2);
}

TEST(InstructionSet, The_best_one_is_in_use_unless_another_is_forced) {
    EXPECT_EQ(InstructionSetInUse(), BestInstructionSet());
    for (InstructionSet set : OfferedSets()) {
        {
            const ForcedSet forced(set);
            EXPECT_EQ(InstructionSetInUse(), set);
        }
        EXPECT_EQ(InstructionSetInUse(), BestInstructionSet());
    }
}

TEST(InstructionSet, One_that_the_processor_lacks_is_refused_and_changes_nothing) {
    const ForcedSet forced(InstructionSet::Plain);
    for (int above = static_cast<int>(BestInstructionSet()) + 1; above <= 4; ++above) {
        EXPECT_FALSE(ForceInstructionSet(static_cast<InstructionSet>(above))) << above;
        EXPECT_EQ(InstructionSetInUse(), InstructionSet::Plain);
    }
}

TEST(InstructionSet, A_routine_runs_in_the_form_of_the_set_or_of_the_next_lower_one_it_has) {
    const struct {
        Forms<int()> forms;
        int inUse[kInstructionSets];  // by set
    } rows[] = {
        {{{Plain, Sse2, Avx2, Avx512}}, {0, 1, 2, 3}},
        {{{Plain}}, {0, 0, 0, 0}},
        {{{Plain, Sse2}}, {0, 1, 1, 1}},
        {{{Plain, nullptr, Avx2}}, {0, 0, 2, 2}},
        {{{Plain, nullptr, nullptr, Avx512}}, {0, 0, 0, 3}},
        {{{Plain, Sse2, nullptr, Avx512}}, {0, 1, 1, 3}},
    };
    for (InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        for (const auto& row : rows)
            EXPECT_EQ(row.forms.InUse()(), row.inUse[static_cast<int>(set)]) << NameOf(set);
    }
}

}  // namespace
