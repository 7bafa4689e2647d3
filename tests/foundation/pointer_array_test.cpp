#include "foundation/pointer_array.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "support/allocation_faults.h"

namespace {

// Items are addresses in here, so that each is told from the others.
char gItems[2000];

void Fill(XPointerArray& array, int count) {
    for (int index = 0; index < count; ++index) array.Append(&gItems[index]);
}

std::vector<void*> Contents(const XPointerArray& array) {
    std::vector<void*> contents;
    for (int index = 0; index < array.Count(); ++index) contents.push_back(array.At(index));
    return contents;
}

TEST(PointerArray, The_first_16_items_take_no_memory) {
    int calls = 0;
    {
        AllocationFaults memory;
        XPointerArray array;
        Fill(array, 16);
        calls = memory.Calls();
    }
    EXPECT_EQ(calls, 0);
}

TEST(PointerArray, Capacity_grows_by_a_doubling_step) {
    struct Row {
        int count, capacity, growth;
    } const rows[] = {{0, 16, 32},    {16, 16, 32},    {17, 48, 64},   {48, 48, 64},
                      {49, 112, 128}, {113, 240, 256}, {241, 496, 512}};
    for (const Row& row : rows) {
        XPointerArray array;
        Fill(array, row.count);
        EXPECT_EQ(array.Capacity(), row.capacity) << row.count;
        EXPECT_EQ(array.Growth(), row.growth) << row.count;
        for (int index = 0; index < row.count; ++index) EXPECT_EQ(array.At(index), &gItems[index]);
    }
}

TEST(PointerArray, The_step_stops_doubling_at_500000) {
    XPointerArray array;
    int capacity = 0;
    for (int step = 32; step < 500000; step *= 2) capacity += step;
    const int beforeTheCap = 16 + capacity;
    while (array.Count() <= beforeTheCap) array.Append(nullptr);
    EXPECT_EQ(array.Capacity(), beforeTheCap + 500000);
    EXPECT_EQ(array.Growth(), 500000);
    while (array.Count() <= beforeTheCap + 500000) array.Append(nullptr);
    EXPECT_EQ(array.Capacity(), beforeTheCap + 1000000);
    EXPECT_EQ(array.Growth(), 500000);
}

TEST(PointerArray, Clear_does_not_take_up_the_inline_room_again) {
    for (const int count : {0, 5, 100}) {
        XPointerArray array;
        Fill(array, count);
        array.Clear();
        EXPECT_EQ(array.Count(), 0);
        EXPECT_EQ(array.Capacity(), 0);
        EXPECT_EQ(array.Growth(), 32);
        array.Append(gItems);
        EXPECT_EQ(array.Capacity(), 32);
        EXPECT_EQ(array.Growth(), 64);
        EXPECT_EQ(array.At(0), gItems);
        Fill(array, 32);
        EXPECT_EQ(array.Capacity(), 96);
        Fill(array, 64);
        EXPECT_EQ(array.Capacity(), 224);
    }
}

TEST(PointerArray, Insert_appends_at_minus_1_and_behind_the_end) {
    for (const int index : {-1, 1000, 4, 3, -2, std::numeric_limits<int>::min()}) {
        XPointerArray array;
        Fill(array, 3);
        array.Insert(index, &gItems[9]);
        EXPECT_EQ(Contents(array), (std::vector<void*>{&gItems[0], &gItems[1], &gItems[2], &gItems[9]}))
            << index;
    }
}

TEST(PointerArray, Insert_moves_the_later_items_up) {
    XPointerArray array;
    Fill(array, 3);
    array.Insert(0, &gItems[8]);
    array.Insert(2, &gItems[9]);
    EXPECT_EQ(Contents(array),
              (std::vector<void*>{&gItems[8], &gItems[0], &gItems[9], &gItems[1], &gItems[2]}));
}

TEST(PointerArray, RemoveAt_outside_does_nothing) {
    XPointerArray array;
    Fill(array, 3);
    for (const int index : {-1, 3, 1000, std::numeric_limits<int>::min()}) array.RemoveAt(index);
    EXPECT_EQ(array.Count(), 3);
    array.RemoveAt(1);
    EXPECT_EQ(Contents(array), (std::vector<void*>{&gItems[0], &gItems[2]}));
    array.Clear();
    array.RemoveAt(0);
    EXPECT_EQ(array.Count(), 0);
}

TEST(PointerArray, Swap_exchanges_two_items) {
    XPointerArray array;
    Fill(array, 3);
    array.Swap(0, 2);
    array.Swap(1, 1);
    EXPECT_EQ(Contents(array), (std::vector<void*>{&gItems[2], &gItems[1], &gItems[0]}));
}

TEST(PointerArray, Random_changes_agree_with_a_vector) {
    std::mt19937 random(3);
    XPointerArray array;
    std::vector<void*> twin;
    for (int round = 0; round < 5000; ++round) {
        const int index = static_cast<int>(random() % (twin.size() + 1));
        if (random() % 5 < 3) {
            void* const item = &gItems[random() % sizeof gItems];
            array.Insert(index, item);
            twin.insert(twin.begin() + index, item);
        } else if (index < static_cast<int>(twin.size())) {
            array.RemoveAt(index);
            twin.erase(twin.begin() + index);
        }
        if (random() % 1000 == 0) array.Clear(), twin.clear();
        ASSERT_EQ(Contents(array), twin) << round;
    }
}

TEST(PointerArray, Growth_without_memory_raises_and_leaves_the_items) {
    XPointerArray array;
    Fill(array, 16);
    EXPECT_TRUE(RaisesWithoutMemory([&] { array.Append(gItems); }));
    EXPECT_EQ(array.Count(), 16);
    EXPECT_EQ(array.Capacity(), 16);
    EXPECT_EQ(array.At(15), &gItems[15]);
    EXPECT_EQ(FailEachAllocation([] {
                  XPointerArray growing;
                  Fill(growing, 300);
              }),
              4);
}

}  // namespace
