#include "foundation/id_tag_list.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/allocation_faults.h"
#include "support/wide_text.h"

namespace {

// A flat form put together by hand, each number free to lie.
class Flat {
  public:
    Flat& Int(std::int64_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            mBytes.push_back(static_cast<std::uint8_t>(value >> shift));
        return *this;
    }
    Flat& Text(const std::u16string& text) {
        for (const char16_t unit : text) Unit(unit);
        return Unit(0);
    }
    Flat& Unit(char16_t unit) {
        mBytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        return Byte(unit >> 8);
    }
    Flat& Byte(int value) {
        mBytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    // An entry whose size tells the truth.
    Flat& Entry(const std::u16string& name, const std::u16string& value, const std::string& art = {}) {
        Int(static_cast<std::int64_t>(4 + 2 * (name.size() + 1) + 2 * (value.size() + 1) + art.size()));
        Text(name).Text(value);
        for (const char byte : art) Byte(byte);
        return *this;
    }

    const std::vector<std::uint8_t>& Bytes() const { return mBytes; }

  private:
    std::vector<std::uint8_t> mBytes;
};

struct Row {
    std::u16string name, value;
    std::string art;
    bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << testing::PrintToString(row.name) << " = " << testing::PrintToString(row.value) << " + "
         << row.art.size();
}

using Rows = std::vector<Row>;

Rows Contents(const clIDTagList& list) {
    Rows rows;
    for (int index = 0; index < list.Count(); ++index) {
        const IDTagRow& row = list.At(index);
        rows.push_back({Units(row.name), Units(row.value),
                        std::string(row.art.Data(), row.art.Data() + row.art.Size())});
    }
    return rows;
}

// Reads from a block of exactly that size, so that a sanitizer sees every byte read too many.
Rows Read(const std::vector<std::uint8_t>& bytes, std::size_t size) {
    const auto block = std::make_unique<std::uint8_t[]>(size);
    std::copy_n(bytes.begin(), size, block.get());
    clIDTagList list;
    list.Add(u"old", u"row");
    list.Deserialise(block.get(), static_cast<std::int64_t>(size));
    EXPECT_EQ(list.Current(), list.Count() ? &list.At(list.Count() - 1) : nullptr);
    return Contents(list);
}

Rows Read(const Flat& flat) {
    return Read(flat.Bytes(), flat.Bytes().size());
}

std::vector<std::uint8_t> Written(const clIDTagList& list) {
    clByteStore flat;
    EXPECT_TRUE(list.Serialise(flat));
    return std::vector<std::uint8_t>(flat.Data(), flat.Data() + flat.Size());
}

TEST(IDTagList, Add_makes_the_new_row_current) {
    clIDTagList list;
    EXPECT_EQ(list.Current(), nullptr);
    list.Add(u"Artist", u"Somebody");
    list.Add(u"Title", nullptr);
    EXPECT_EQ(Contents(list), (Rows{{u"Artist", u"Somebody", ""}, {u"Title", u"", ""}}));
    EXPECT_EQ(list.Current(), &list.At(1));
    EXPECT_EQ(list.At(0).art.Data(), nullptr);
}

TEST(IDTagList, AddBinary_of_no_bytes_leaves_a_block_of_1_byte) {
    clIDTagList list;
    list.AddBinary(u"Cover", u"image/png", "PNG", 3);
    list.AddBinary(u"Cover", u"image/png", nullptr, 0);
    EXPECT_EQ(Contents(list), (Rows{{u"Cover", u"image/png", "PNG"}, {u"Cover", u"image/png", ""}}));
    EXPECT_NE(list.At(1).art.Data(), nullptr);
    EXPECT_EQ(list.At(1).art.Capacity(), 1u);
    EXPECT_EQ(list.At(1).art.Size(), 0u);
    EXPECT_EQ(list.Current(), &list.At(1));
}

TEST(IDTagList, RemoveAt_of_the_current_row_leaves_none_current) {
    clIDTagList list;
    for (const char16_t* name : {u"a", u"b", u"c"}) list.Add(name, u"");
    list.Fetch(1);
    list.RemoveAt(0);
    EXPECT_EQ(list.Current(), &list.At(0));
    for (const int index : {-1, 2, 1000}) list.RemoveAt(index);
    EXPECT_EQ(list.Count(), 2);
    list.RemoveAt(0);
    EXPECT_EQ(list.Current(), nullptr);
    EXPECT_EQ(Contents(list), (Rows{{u"c", u"", ""}}));
}

TEST(IDTagList, Fetch_outside_leaves_the_current_row) {
    clIDTagList list;
    list.Add(u"a", u"");
    list.Add(u"b", u"");
    EXPECT_EQ(list.Fetch(0), &list.At(0));
    for (const int index : {-1, 2, 1000}) EXPECT_EQ(list.Fetch(index), nullptr);
    EXPECT_EQ(list.Current(), &list.At(0));
}

TEST(IDTagList, Clear_leaves_no_row_and_none_current) {
    clIDTagList list;
    for (int count = 0; count < 40; ++count) list.AddBinary(u"a", u"b", "c", 1);
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Current(), nullptr);
    list.Add(u"a", u"b");
    EXPECT_EQ(list.Count(), 1);
}

TEST(IDTagList, Serialise_of_an_empty_list_gives_four_zero_bytes) {
    EXPECT_EQ(Written(clIDTagList()), (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

TEST(IDTagList, Serialise_writes_the_flat_form_exactly) {
    clIDTagList list;
    list.Add(u"A\u20AC", u"");
    list.AddBinary(u"", u"v", "\1\2\3", 3);
    const std::vector<std::uint8_t> expected = {
        2,  0, 0, 0,                                     // rows
        12, 0, 0, 0, 'A', 0, 0xAC, 0x20, 0, 0, 0, 0,     // name and no value
        13, 0, 0, 0, 0,   0, 'v',  0,    0, 0, 1, 2, 3,  // no name, a value and bytes
    };
    EXPECT_EQ(Written(list), expected);
}

TEST(IDTagList, Serialise_gives_a_store_that_was_larger_the_exact_size) {
    clIDTagList list;
    list.Add(u"a", u"b");
    clByteStore flat;
    flat.Resize(1000, false, 0);
    flat.SetCursor(900);
    EXPECT_TRUE(list.Serialise(flat));
    EXPECT_EQ(flat.Size(), 16u);
    EXPECT_EQ(flat.Cursor(), 16u);
}

TEST(IDTagList, Serialise_without_memory_answers_false) {
    clIDTagList list;
    list.Add(u"a", u"b");
    clByteStore flat;
    bool done = true;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        done = list.Serialise(flat);
    }
    EXPECT_FALSE(done);
    EXPECT_EQ(flat.Data(), nullptr);
}

TEST(IDTagList, Deserialise_reads_what_Serialise_wrote) {
    std::mt19937 random(6);
    for (unsigned round = 0; round < 200; ++round) {
        clIDTagList list;
        for (unsigned left = round % 40; left > 0; --left) {
            const std::u16string name =
                Repeated(static_cast<char16_t>(1 + random() % 0xFFFF), static_cast<int>(random() % 300));
            const std::u16string value =
                Repeated(static_cast<char16_t>(1 + random() % 0xFFFF), static_cast<int>(random() % 5));
            const std::string art(random() % 4 == 0 ? random() % 1000 : 0, static_cast<char>(random()));
            list.AddBinary(name.c_str(), value.c_str(), art.data(), static_cast<std::uint32_t>(art.size()));
        }
        const std::vector<std::uint8_t> bytes = Written(list);
        EXPECT_EQ(Read(bytes, bytes.size()), Contents(list));
    }
}

TEST(IDTagList, Deserialise_of_4_bytes_or_less_leaves_an_empty_list) {
    const std::vector<std::uint8_t> zeros(4, 0), ones(4, 1);
    for (std::size_t size = 0; size <= 4; ++size) {
        EXPECT_EQ(Read(zeros, size), Rows()) << size;
        EXPECT_EQ(Read(ones, size), Rows()) << size;
    }
}

TEST(IDTagList, Deserialise_of_no_data_leaves_an_empty_list) {
    clIDTagList list;
    for (const std::int64_t size : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{100}}) {
        list.Add(u"a", u"b");
        list.Deserialise(nullptr, size);
        EXPECT_EQ(list.Count(), 0);
    }
    const std::vector<std::uint8_t> bytes = Flat().Int(1).Entry(u"a", u"b").Bytes();
    for (const std::int64_t size : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        list.Deserialise(bytes.data(), size);
        EXPECT_EQ(list.Count(), 0);
    }
}

TEST(IDTagList, Deserialise_reads_at_most_the_rows_counted) {
    struct Case {
        std::int64_t count;
        std::size_t rows;
    } const cases[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 3}, {0x7FFFFFFF, 3}, {-1, 0}, {0x80000000, 0}};
    for (const Case& one : cases) {
        Flat flat;
        flat.Int(one.count).Entry(u"a", u"1").Entry(u"b", u"2", "xyz").Entry(u"c", u"3");
        EXPECT_EQ(Read(flat).size(), one.rows) << one.count;
    }
}

TEST(IDTagList, Deserialise_keeps_the_rows_before_one_whose_size_lies) {
    const Rows first = {{u"a", u"1", ""}};
    for (const std::int64_t size : {std::int64_t{-1}, std::int64_t{-4}, std::int64_t{0x80000000},
                                    std::int64_t{0x7FFFFFFF}, std::int64_t{17}, std::int64_t{1000}}) {
        Flat flat;
        flat.Int(2).Entry(u"a", u"1").Int(size).Text(u"b").Text(u"2").Int(0);  // 16 bytes behind the first
                                                                               // entry
        EXPECT_EQ(Read(flat), first) << size;
    }
}

TEST(IDTagList, Deserialise_keeps_the_name_of_a_row_that_ends_with_it) {
    const Rows named = {{u"a", u"1", ""}, {u"b", u"", ""}};
    for (const std::int64_t size : {0, 1, 3, 4, 5, 7, 8}) {  // all end at or before the name's NUL
        Flat flat;
        flat.Int(3).Entry(u"a", u"1").Int(size).Text(u"b").Text(u"2").Entry(u"c", u"3");
        EXPECT_EQ(Read(flat), named) << size;
    }
}

TEST(IDTagList, Deserialise_keeps_the_value_of_a_row_that_ends_within_it) {
    const Rows valued = {{u"a", u"1", ""}, {u"b", u"22", ""}};
    for (const std::int64_t size : {9, 10, 11, 13}) {
        Flat flat;
        flat.Int(3).Entry(u"a", u"1").Int(size).Text(u"b").Text(u"22").Entry(u"c", u"3");
        EXPECT_EQ(Read(flat), valued) << size;
    }
}

TEST(IDTagList, Deserialise_drops_a_name_and_a_value_without_a_NUL) {
    Flat name;
    name.Int(2).Entry(u"a", u"1").Int(8).Unit(u'b').Unit(u'c');
    EXPECT_EQ(Read(name), (Rows{{u"a", u"1", ""}}));
    Flat value;
    value.Int(2).Entry(u"a", u"1").Int(12).Text(u"b").Unit(u'2').Unit(u'2');
    EXPECT_EQ(Read(value), (Rows{{u"a", u"1", ""}, {u"b", u"", ""}}));
    Flat half;
    half.Int(1).Int(7).Unit(u'b').Byte(0);  // half a NUL
    EXPECT_EQ(Read(half), Rows());
    Flat nothing;
    nothing.Int(1).Int(4);
    EXPECT_EQ(Read(nothing), Rows());
}

TEST(IDTagList, Deserialise_takes_texts_and_bytes_at_odd_places) {
    Flat flat;
    flat.Int(3).Entry(u"a", u"1", "x").Entry(u"b", u"2", "yyy").Entry(u"c", u"");
    EXPECT_EQ(Read(flat), (Rows{{u"a", u"1", "x"}, {u"b", u"2", "yyy"}, {u"c", u"", ""}}));
}

TEST(IDTagList, Deserialise_survives_every_cut) {
    Flat flat;
    flat.Int(3).Entry(u"name", u"value", "bytes").Entry(u"b", u"").Entry(u"c", u"3", "x");
    const Rows whole = Read(flat);
    ASSERT_EQ(whole.size(), 3u);
    for (std::size_t size = 0; size < flat.Bytes().size(); ++size) {
        const Rows rows = Read(flat.Bytes(), size);
        ASSERT_LT(rows.size(), 3u) << size;
        for (std::size_t row = 0; row < rows.size(); ++row) EXPECT_EQ(rows[row], whole[row]) << size;
    }
}

TEST(IDTagList, Deserialise_survives_every_changed_byte) {
    Flat flat;
    flat.Int(2).Entry(u"name", u"value", "bytes").Entry(u"b", u"2");
    for (std::size_t at = 0; at < flat.Bytes().size(); ++at) {
        for (const int value : {0, 1, 2, 3, 4, 5, 0x7F, 0x80, 0xFF}) {
            std::vector<std::uint8_t> bytes = flat.Bytes();
            bytes[at] = static_cast<std::uint8_t>(value);
            EXPECT_LE(Read(bytes, bytes.size()).size(), 2u);
        }
    }
}

TEST(IDTagList, Memory_that_runs_out_raises_and_leaves_nothing_behind) {
    Flat flat;
    flat.Int(20);
    for (int count = 0; count < 20; ++count) flat.Entry(Repeated(u'n', 200), Repeated(u'v', 200), "bytes");
    const int allocations = FailEachAllocation([&] {
        clIDTagList list;
        list.Add(u"name", Repeated(u'v', 200).c_str());
        list.AddBinary(u"name", u"value", "bytes", 5);
        list.Deserialise(flat.Bytes().data(), static_cast<std::int64_t>(flat.Bytes().size()));
    });
    EXPECT_GT(allocations, 60);
}

TEST(IDTagList, A_row_without_memory_is_not_added) {
    clIDTagList list;
    list.Add(u"a", u"b");
    EXPECT_TRUE(RaisesWithoutMemory([&] { list.AddBinary(u"c", u"d", "bytes", 5); }));
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Current(), &list.At(0));
}

TEST(IDTagList, Deserialise_without_memory_keeps_the_rows_read_so_far) {
    Flat flat;
    flat.Int(2).Entry(u"a", u"1", "x").Entry(u"b", u"2", "y");
    clIDTagList list;
    bool raised = false;
    {
        AllocationFaults memory;
        memory.FailCall(5);  // the first row, its bytes, the array, the second row, its bytes
        try {
            list.Deserialise(flat.Bytes().data(), static_cast<std::int64_t>(flat.Bytes().size()));
        } catch (const std::bad_alloc&) {
            raised = true;
        }
    }
    EXPECT_TRUE(raised);
    EXPECT_EQ(Contents(list), (Rows{{u"a", u"1", "x"}}));
}

}  // namespace
