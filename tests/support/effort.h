// How often a test repeats what shows only in the long run. Sanitizers slow everything down, and under an
// emulator a process takes a tenth of a second to start; what is measured there is the same, only shorter.
#pragma once

enum class Effort { kPlain, kSanitized, kEmulated };

inline constexpr Effort kEffort = Effort::QV_EFFORT;

constexpr int Times(int plain, int sanitized, int emulated) {
    return kEffort == Effort::kPlain ? plain : kEffort == Effort::kSanitized ? sanitized : emulated;
}
