// The screen's resolution is asked once in a process's life, so each has a process of its own.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/process.h"
#include "platform/synchronisation.h"
#include "settings/toolkit/window.h"
#include "support/child.h"
#include "support/faults.h"
#include "toolkit/own_child.h"

CHILD_PROGRAM(scale) {
    const std::int32_t pixelsPerInch = std::atoi(argv[0]), value = std::atoi(argv[1]),
                       expected = std::atoi(argv[2]);
    Faulty<platform::GetDeviceCaps> caps;
    caps.Replace([=](platform::DeviceContext, std::int32_t what) {
        return what == platform::kPixelsPerInchX ? pixelsPerInch : 1;
    });
    const bool first = XWindow::ScaleForDPI(value) == expected;
    caps.Replace([](platform::DeviceContext, std::int32_t) { return 1000; });
    const bool again = XWindow::ScaleForDPI(value) == expected;
    return first && again && caps.Calls() == 1 ? 0 : 1;
}

TEST(Scale, pixels_grow_with_the_screens_resolution_truncated_and_asked_once) {
    struct Row {
        const char16_t* screenValueResult;
    };
    constexpr Row kRows[] = {
        {u"96 16 16"},  {u"96 25 25"},   {u"96 13 13"}, {u"120 16 20"}, {u"120 25 31"},
        {u"120 13 16"}, {u"144 96 144"}, {u"144 1 1"},  {u"144 13 19"}, {u"192 25 50"},
        {u"144 0 0"},   {u"144 -1 -1"},  {u"0 16 16"},  {u"-1 16 16"},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(RunOwnChild("scale", row.screenValueResult), 0)
            << XString(row.screenValueResult).ToNarrow();
}
