// Every operation of the seam can be failed on any call. The list is made from the contract's headers at
// build time.
#include <gtest/gtest.h>

#include "seam_headers.inc"
#include "support/faults.h"

namespace {

// Three calls, the second of which fails. A stand-in takes the others: no native operation is called.
template <auto& operation, class Result, class... Arguments>
void ExpectSecondOfThreeFails(const platform::Operation<Result(Arguments...)>&) {
    Faulty<operation> faulty;
    std::string seen;
    faulty.Replace([&](Arguments...) -> Result {
        seen += "real ";
        return Result();
    });
    faulty.FailCall(2);
    for (int call = 1; call <= 3; ++call) {
        platform::SetLastError.Native()(platform::kErrorSuccess);
        operation(std::remove_cvref_t<Arguments>{}...);
        if (platform::GetLastError.Native()() == platform::kErrorGeneral) seen += "failed ";
    }
    EXPECT_EQ(seen, "real failed real ");
    EXPECT_EQ(faulty.Calls(), 3);
}

template <auto& operation, class Result, class... Arguments>
void ExpectAllFail(const platform::Operation<Result(Arguments...)>&) {
    Faulty<operation> faulty;
    faulty.Replace([](Arguments...) -> Result {
        ADD_FAILURE() << "a call came through";
        return Result();
    });
    faulty.FailAlways();
    for (int call = 1; call <= 3; ++call) operation(std::remove_cvref_t<Arguments>{}...);
    EXPECT_EQ(faulty.Calls(), 3);
}

}  // namespace

#define OPERATION(name)                                           \
    TEST(Faults, name##_fails_when_told_to) {                     \
        ExpectSecondOfThreeFails<platform::name>(platform::name); \
        ExpectAllFail<platform::name>(platform::name);            \
    }
#include "seam_operations.inc"
