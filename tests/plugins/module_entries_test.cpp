// The guard that every call into a module passes.
#include "plugins/module_entries.h"

#include <gtest/gtest.h>

namespace {

int gCalls = 0;

QvInstance Make(const QvLog*) {
    return 5;
}
QvInstance MakeNothing(const QvLog*) {
    return 0;
}
void End(QvInstance instance) {
    gCalls += static_cast<int>(instance);
}
std::int32_t Refuse(QvInstance, clBlockRec*) {
    ++gCalls;
    return 0;
}
std::int32_t Answer(QvInstance, clBlockRec*) {
    ++gCalls;
    return -3;
}

template <class Function>
platform::EntryPoint AsEntry(Function function) {
    return reinterpret_cast<platform::EntryPoint>(function);
}

class Guard : public testing::Test {
  protected:
    Guard() { gCalls = 0; }
    std::int32_t Decode() { return mEntries.Call<QvDecoderDecodeBlock>(2, &mBlock); }

    ModuleEntries<3> mEntries;
    clBlockRec mBlock = {};
    const XLog mLog;
};

TEST_F(Guard, Without_an_instance_nothing_is_called) {
    mEntries.Slots() = {AsEntry(&Make), AsEntry(&End), AsEntry(&Answer)};
    EXPECT_EQ(Decode(), 0);
    mEntries.Destroy();
    EXPECT_EQ(gCalls, 0);
}

TEST_F(Guard, Without_the_entry_nothing_is_called) {
    mEntries.Slots() = {AsEntry(&Make), nullptr, nullptr};
    ASSERT_TRUE(mEntries.Create(mLog));
    EXPECT_EQ(Decode(), 0);
    mEntries.Destroy();
    EXPECT_EQ(mEntries.Instance(), 0u);
    EXPECT_EQ(gCalls, 0);
}

TEST_F(Guard, With_both_the_entry_is_called_and_its_result_handed_on) {
    mEntries.Slots() = {AsEntry(&Make), AsEntry(&End), AsEntry(&Answer)};
    ASSERT_TRUE(mEntries.Create(mLog));
    EXPECT_EQ(Decode(), -3);
    mEntries.Slots()[2] = AsEntry(&Refuse);
    EXPECT_EQ(Decode(), 0);
    EXPECT_EQ(gCalls, 2);
}

TEST_F(Guard, Create_ends_the_instance_before) {
    mEntries.Slots() = {AsEntry(&Make), AsEntry(&End), nullptr};
    ASSERT_TRUE(mEntries.Create(mLog));
    mEntries.Slots()[0] = AsEntry(&MakeNothing);
    EXPECT_FALSE(mEntries.Create(mLog));
    EXPECT_EQ(gCalls, 5);
    EXPECT_EQ(mEntries.Instance(), 0u);
}

}  // namespace
