#include "abi/host_in_c.h"

#include <gtest/gtest.h>

TEST(Abi, A_C_host_that_is_linked_with_the_library_can_make_every_call) {
    EXPECT_EQ(HostInC(), 0) << "a line of host_in_c.c";
}
