// The main of every test program. A program that found no test has tested nothing and fails. Processes that a
// test starts are this very program again: a registered child's name as first argument runs it instead of the
// tests.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "support/child.h"
#include "support/own_settings.h"

int main(int argc, char** argv) {
    if (argc > 1 && std::strncmp(argv[1], "--child=", 8) == 0)
        return child::Run(argv[1] + 8, argc - 2, argv + 2);
    const OwnSettings settings;
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    if (result == 0 && all.test_to_run_count() == 0) {
        std::fprintf(stderr, "no test was run\n");
        return 1;
    }
    std::printf("%d tests passed\n", all.successful_test_count());
    return result;
}
