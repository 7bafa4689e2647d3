// The two lists that a host prepares a conversion with.
#include <gtest/gtest.h>

#include <memory>

#include "interface/host.h"
#include "support/allocation_faults.h"

namespace {

struct Read {
    std::int32_t result;
    std::u16string first, second;
    bool operator==(const Read&) const = default;
};

Read ReadTag(Host& host, std::int32_t index) {
    char16_t name[64] = u"#", value[64] = u"#";
    const std::int32_t result = QACReadIDTagList(host.handle, index, Out(name), Out(value));
    return {result, name, value};
}

Read ReadEffect(Host& host, std::int32_t index) {
    char16_t name[64] = u"#", settings[64] = u"#";
    const std::int32_t result = QACReadDSPList(host.handle, index, Out(name), Out(settings));
    return {result, name, settings};
}

const Read kNothing = {0, u"#", u"#"};

class Lists : public testing::Test {
  protected:
    ManualTimers timers;
    Host host;
};

}  // namespace

TEST_F(Lists, Tags_come_back_as_they_were_added) {
    EXPECT_EQ(QACAddIDTagToList(host.handle, In(u"Title"), In(u"One")), 1);
    EXPECT_EQ(host->tagList.Current(), &host->tagList.At(0));
    EXPECT_EQ(QACAddIDTagToList(host.handle, In(u"Title"), In(u"Two")), 1);
    EXPECT_EQ(host->tagList.Current(), &host->tagList.At(1));
    EXPECT_EQ(host->tagList.At(1).art.Size(), 0u);
    EXPECT_EQ(ReadTag(host, 0), (Read{1, u"Title", u"One"}));
    EXPECT_EQ(ReadTag(host, 1), (Read{1, u"Title", u"Two"}));
    EXPECT_EQ(ReadTag(host, 2), kNothing);
}

TEST_F(Lists, A_tag_without_a_value_is_invisible_and_keeps_its_place) {
    host.AddTag(u"Empty", u"");
    host.AddTag(u"", u"nameless");
    host->tagList.AddBinary(u"Cover", u"", "art", 3);
    EXPECT_EQ(ReadTag(host, 0), kNothing);
    EXPECT_EQ(ReadTag(host, 1), (Read{1, u"", u"nameless"}));
    EXPECT_EQ(ReadTag(host, 2), kNothing);
    EXPECT_EQ(host->tagList.Count(), 3);
}

TEST_F(Lists, Removing_a_tag_answers_1_whether_or_not_there_was_one) {
    for (const char16_t* value : {u"a", u"b", u"c"}) host.AddTag(u"n", value);
    for (const std::int32_t index : {3, 4, 1000, INT32_MAX, -1, INT32_MIN}) {
        EXPECT_EQ(QACRemoveFromIDTagList(host.handle, index), 1) << index;
    }
    EXPECT_EQ(host->tagList.Count(), 3);
    EXPECT_EQ(QACRemoveFromIDTagList(host.handle, 1), 1);
    EXPECT_EQ(ReadTag(host, 0), (Read{1, u"n", u"a"}));
    EXPECT_EQ(ReadTag(host, 1), (Read{1, u"n", u"c"}));
    EXPECT_EQ(ReadTag(host, 2), kNothing);
}

TEST_F(Lists, Clearing_tags_leaves_a_list_that_can_be_filled_again) {
    EXPECT_EQ(QACClearIDTagList(host.handle), 1);
    host.AddTag(u"n", u"a");
    EXPECT_EQ(QACClearIDTagList(host.handle), 1);
    EXPECT_EQ(host->tagList.Count(), 0);
    EXPECT_EQ(ReadTag(host, 0), kNothing);
    host.AddTag(u"n", u"b");
    EXPECT_EQ(ReadTag(host, 0), (Read{1, u"n", u"b"}));
}

TEST_F(Lists, Write_through_is_stored_as_it_is_given) {
    for (const std::int32_t enabled : {1, 0, -5, 7, INT32_MIN}) {
        EXPECT_EQ(QACSetTagWriteThrough(host.handle, enabled), 1);
        EXPECT_EQ(host->tagWriteThrough, enabled);
    }
}

TEST_F(Lists, The_processor_is_stored_as_it_is_given) {
    for (const std::int32_t cpu : {0, 3, -1, INT32_MAX}) {
        EXPECT_EQ(QACSetCPU(host.handle, cpu), 1);
        EXPECT_EQ(host->cpu, cpu);
    }
}

TEST_F(Lists, Effects_come_back_in_their_order) {
    for (const char16_t* name : {u"Echo", u"", u"Echo"}) {
        EXPECT_EQ(QACAddDSPToList(host.handle, In(name), In(u"s=\"1\"")), 1);
        EXPECT_EQ(host->dspChain.Current(), &host->dspChain.At(host->dspChain.Count() - 1));
    }
    EXPECT_EQ(ReadEffect(host, 1), (Read{1, u"", u"s=\"1\""}));
    EXPECT_EQ(host->dspChain.Current(), &host->dspChain.At(1));
    EXPECT_EQ(ReadEffect(host, 3), kNothing);
    EXPECT_EQ(host->dspChain.Current(), &host->dspChain.At(1)) << "a row that is not there changes nothing";
    EXPECT_EQ(ReadEffect(host, 2), (Read{1, u"Echo", u"s=\"1\""}));
}

TEST_F(Lists, Removing_an_effect_closes_the_gap_and_refuses_an_index_equal_to_the_count) {
    for (const char16_t* name : {u"a", u"b", u"c"}) host.AddEffect(name, u"");
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 3), 0);
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 0), 1);
    EXPECT_EQ(ReadEffect(host, 0), (Read{1, u"b", u""}));
    EXPECT_EQ(ReadEffect(host, 1), (Read{1, u"c", u""}));
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 2), 0);
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 1), 1);
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 0), 1);
    EXPECT_EQ(QACRemoveFromDSPList(host.handle, 0), 0);
}

TEST_F(Lists, Removing_the_current_effect_leaves_none_current_and_removing_another_leaves_it) {
    for (const char16_t* name : {u"a", u"b", u"c"}) host.AddEffect(name, u"");
    ReadEffect(host, 1);
    const DSPRow* const second = &host->dspChain.At(1);
    QACRemoveFromDSPList(host.handle, 0);
    EXPECT_EQ(host->dspChain.Current(), second);
    EXPECT_EQ(&host->dspChain.At(0), second);
    QACRemoveFromDSPList(host.handle, 0);
    EXPECT_EQ(host->dspChain.Current(), nullptr);
}

TEST_F(Lists, Clearing_effects_leaves_a_list_that_can_be_filled_again) {
    for (int row = 0; row < 100; ++row) host.AddEffect(u"n", u"s");
    EXPECT_EQ(QACClearDSPList(host.handle), 1);
    EXPECT_EQ(host->dspChain.Count(), 0);
    EXPECT_EQ(host->dspChain.Current(), nullptr);
    EXPECT_EQ(ReadEffect(host, 0), kNothing);
    host.AddEffect(u"m", u"t");
    EXPECT_EQ(ReadEffect(host, 0), (Read{1, u"m", u"t"}));
}

TEST_F(Lists, A_negative_index_is_no_row) {
    host.AddTag(u"n", u"v");
    host.AddEffect(u"n", u"s");
    for (const std::int32_t index : {-1, -2, INT32_MIN}) {
        EXPECT_EQ(ReadTag(host, index), kNothing);
        EXPECT_EQ(ReadEffect(host, index), kNothing);
        EXPECT_EQ(QACRemoveFromDSPList(host.handle, index), 0);
    }
    EXPECT_EQ(host->dspChain.Count(), 1);
}

TEST_F(Lists, Null_texts_are_empty_and_null_buffers_receive_nothing) {
    EXPECT_EQ(QACAddIDTagToList(host.handle, nullptr, nullptr), 1);
    EXPECT_EQ(QACAddIDTagToList(host.handle, nullptr, In(u"v")), 1);
    EXPECT_EQ(QACAddDSPToList(host.handle, nullptr, nullptr), 1);
    EXPECT_EQ(ReadTag(host, 1), (Read{1, u"", u"v"}));
    EXPECT_EQ(ReadEffect(host, 0), (Read{1, u"", u""}));
    EXPECT_EQ(QACReadIDTagList(host.handle, 1, nullptr, nullptr), 1);
    EXPECT_EQ(QACReadDSPList(host.handle, 0, nullptr, nullptr), 1);
}

TEST_F(Lists, Texts_of_any_length_come_back_whole) {
    const std::u16string name(1000, u'n'), value(100'000, u'v');
    host.AddTag(name.c_str(), value.c_str());
    std::vector<char16_t> first(name.size() + 1), second(value.size() + 1);
    EXPECT_EQ(QACReadIDTagList(host.handle, 0, Out(first.data()), Out(second.data())), 1);
    EXPECT_EQ(first.data(), name);
    EXPECT_TRUE(second.data() == value);
}

TEST_F(Lists, Reading_effects_without_a_trace_does_not_look_into_the_buffers) {
    const auto name = std::make_unique<char16_t>(u'!'),
               settings = std::make_unique<char16_t>(u'!');  // no NUL
    EXPECT_EQ(QACReadDSPList(host.handle, 0, Out(name.get()), Out(settings.get())), 0);
    EXPECT_EQ(*name, u'!');
}

TEST_F(Lists, The_trace_tells_what_is_done_to_the_effects_in_words) {
    Trace trace(host);
    host.AddEffect(u"Echo", u"delay=1");
    EXPECT_EQ(trace.Take(), Enter("clConverter::DSPAddToList") +
                                u"  Adding DSP: Echo  Settings: delay=1\r\n" +
                                Leave("clConverter::DSPAddToList"));
    ReadEffect(host, 0);
    EXPECT_EQ(trace.Take(), Enter("clConverter::DSPReadList") + u"  DSP: Echo  Settings: delay=1\r\n" +
                                Leave("clConverter::DSPReadList"));
    ReadEffect(host, 1);
    EXPECT_EQ(trace.Take(), Enter("clConverter::DSPReadList") + u"  DSP: #  Settings: #\r\n" +
                                Leave("clConverter::DSPReadList"));
    QACRemoveFromDSPList(host.handle, 1);
    EXPECT_EQ(trace.Take(), Enter("clConverter::DSPRemoveFromList") + u"  Removing DSP: 1\r\n" +
                                Leave("clConverter::DSPRemoveFromList"));
    QACClearDSPList(host.handle);
    EXPECT_EQ(trace.Take(), Enter("clConverter::DSPClearList") + Leave("clConverter::DSPClearList"));
}

TEST_F(Lists, The_trace_marks_each_call_on_the_tags) {
    Trace trace(host);
    host.AddTag(u"n", u"v");
    ReadTag(host, 0);
    ReadTag(host, 9);
    QACRemoveFromIDTagList(host.handle, 0);
    QACClearIDTagList(host.handle);
    QACSetTagWriteThrough(host.handle, 1);
    QACSetCPU(host.handle, 2);
    std::u16string expected;
    for (const char* name :
         {"clConverter::IDTagsAddToList", "clConverter::IDTagsReadList", "clConverter::IDTagsReadList",
          "clConverter::IDTagsRemoveFromList", "clConverter::IDTagsClearList",
          "clConverter::SetTagWriteThrough", "clConverter::SetCPU"}) {
        expected += Enter(name) + Leave(name);
    }
    EXPECT_EQ(trace.Text(), expected);
}

TEST_F(Lists, An_effect_that_finds_no_memory_is_not_half_added) {
    const std::u16string name(200, u'n'), settings(200, u's');
    for (int row = 0; row < XPointerArray::kInlineItems; ++row) host.AddEffect(u"n", u"s");
    int failures = 0;
    for (bool failed = true; failed; ++failures) {
        const std::int32_t before = host->dspChain.Count();
        bool raised = false;
        {
            AllocationFaults memory;
            memory.FailCall(failures + 1);
            try {
                host.AddEffect(name.c_str(), settings.c_str());
            } catch (const std::bad_alloc&) {
                raised = true;
            }
            failed = memory.HasFailed();
        }
        EXPECT_EQ(raised, failed);
        EXPECT_EQ(host->dspChain.Count(), before + (raised ? 0 : 1));
    }
    EXPECT_GE(failures, 4) << "the row, its two texts and the list's growth";
}

TEST_F(Lists, A_tag_that_finds_no_memory_raises_and_the_list_goes_on) {
    const std::u16string text(200, u't');
    for (int call = 1; call <= 2; ++call) {
        bool raised = false;
        {
            AllocationFaults memory;
            memory.FailCall(call);
            try {
                host.AddTag(text.c_str(), text.c_str());
            } catch (const std::bad_alloc&) {
                raised = true;
            }
        }
        EXPECT_TRUE(raised);
    }
    QACClearIDTagList(host.handle);
    host.AddTag(u"n", u"v");
    EXPECT_EQ(ReadTag(host, 0), (Read{1, u"n", u"v"}));
}
