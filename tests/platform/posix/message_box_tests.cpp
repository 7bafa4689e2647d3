#include "platform/message_box.h"

#include <gtest/gtest.h>

TEST(PosixMessageBox, shows_nothing_and_returns_0) {
    EXPECT_EQ(platform::MessageBoxW(u"Again?", u"Question", platform::kBoxRetryCancel), 0);
}
