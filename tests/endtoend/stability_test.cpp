// What shows only in the long run: thousands of handles and many conversions leave the process as it was.
#include "endtoend/conversion.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "support/effort.h"
#include "support/handle_gauge.h"

using LongRun = Stage;

TEST_F(LongRun, Ten_thousand_handles_leave_nothing) {
    library.QACDestroy(library.QACCreate());
    const HandleGauge before;
    for (int number = 0; number < Times(10000, 1000, 1000); ++number) {
        QvConverter* const converter = library.QACCreate();
        ASSERT_NE(converter, nullptr);
        ASSERT_EQ(library.QACDestroy(converter), QV_DONE);
    }
    EXPECT_EQ(HandleGauge(), before);
}

TEST_F(LongRun, A_hundred_conversions_with_one_handle_leave_nothing) {
    const std::u16string source = files.Write(u"in.wav", Recording(20000)), destination = files / u"out.wav";
    Host host(library);
    EXPECT_TRUE(host.Convert({source, destination}).Succeeded());
    const HandleGauge before;
    for (int number = 1; number < 100; ++number)
        ASSERT_TRUE(host.Convert({source, destination}).Succeeded()) << number;
    // One handle left by each conversion would show as a hundred at the least; a system opens a few of its own.
    const HandleGauge after;
    EXPECT_LT(after.freshest, before.freshest + 40);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_TRUE(HaveSameAudio(source, destination));
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
}
