// The compiler's own test asks the processor what it has and the system what it saves: a set whose registers
// are lost at a change of threads is not offered.
#include "processor/instruction_set.h"

#include <atomic>

namespace {

InstructionSet Find() {
    __builtin_cpu_init();
    const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    if (avx2 && avx512) return InstructionSet::Avx512;
    return avx2 ? InstructionSet::Avx2 : InstructionSet::Sse2;
}

std::atomic<InstructionSet>& InUse() {
    static std::atomic<InstructionSet> set = BestInstructionSet();
    return set;
}

}  // namespace

InstructionSet BestInstructionSet() {
    static const InstructionSet best = Find();
    return best;
}

InstructionSet InstructionSetInUse() {
    return InUse().load(std::memory_order_relaxed);
}

bool ForceInstructionSet(InstructionSet set) {
    if (set > BestInstructionSet()) return false;
    InUse().store(set, std::memory_order_relaxed);
    return true;
}
