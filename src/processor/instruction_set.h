// What the processor offers beyond the instructions that every x86-64 processor has.
//
// A routine that pays for it stands in several forms, each in a source named after its set (name_avx2.cpp) and
// compiled for it. Such a source keeps everything of its own in an unnamed namespace and includes nothing that
// defines functions: one shared inline function compiled there would run everywhere. Forms gathers the forms
// of a routine; which one runs is found out once, when the library is first asked.
#pragma once

#include <cstddef>
#include <cstdint>

enum class InstructionSet : std::uint8_t {
    Plain,   // ordinary C++, for any x86-64 processor
    Sse2,    // written for vectors of 16 bytes; any x86-64 processor has these
    Avx2,    // vectors of 32 bytes, with fused multiply and add
    Avx512,  // vectors of 64 bytes: F, BW, DQ and VL
};

inline constexpr std::size_t kInstructionSets = 4;

// The widest set that processor and system offer together.
InstructionSet BestInstructionSet();
// The set in use: the best one, unless another was forced.
InstructionSet InstructionSetInUse();
// Makes every routine run in the form of this set or the next lower one it has, in the whole process. False,
// with nothing changed, when the processor doesn't offer it. For tests and measurements, between calls.
bool ForceInstructionSet(InstructionSet set);

// The forms of one routine, by set; null where a set has no form of its own. The plain one always stands.
template <typename Routine>
struct Forms {
    Routine* forms[kInstructionSets];

    Routine* InUse() const {
        auto set = static_cast<std::size_t>(InstructionSetInUse());
        while (!forms[set]) --set;
        return forms[set];
    }
};
