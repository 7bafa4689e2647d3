// The box itself asks a person, so what is tested here is that a test can answer in the person's place.
#include "platform/message_box.h"

#include <gtest/gtest.h>

#include <string>

#include "support/faults.h"

using namespace platform;

TEST(MessageBox, a_test_sees_the_question_and_gives_the_answer) {
    Faulty<platform::MessageBoxW> box;
    std::u16string asked;
    box.Replace([&](const char16_t* text, const char16_t* title, std::uint32_t flags) {
        asked = std::u16string(title) + u": " + text;
        EXPECT_EQ(flags, kBoxRetryCancel | kBoxIconInformation);
        return kBoxResultRetry;
    });
    EXPECT_EQ(MessageBoxW(u"Again?", u"Question", kBoxRetryCancel | kBoxIconInformation), kBoxResultRetry);
    EXPECT_EQ(asked, u"Question: Again?");
}
