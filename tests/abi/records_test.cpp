#include "abi/records.h"

#include <gtest/gtest.h>

namespace {

const AbiRow kRows[] = {ABI_ROWS(ABI_SIZE, ABI_FIELD, ABI_VALUE)};

TEST(Abi, C_and_Cpp_lay_the_records_out_alike) {
    std::size_t count = 0;
    const AbiRow* rowsInC = AbiRowsInC(&count);
    ASSERT_EQ(count, std::size(kRows));
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_STREQ(rowsInC[i].name, kRows[i].name);
        EXPECT_EQ(rowsInC[i].value, kRows[i].value) << kRows[i].name;
    }
}

TEST(Abi, A_C_function_fits_the_entry_types_that_Cpp_calls) {
    const QvDecoderCreate create = &MakeInC;
    const QvDecoderOpen open = &DescribeInC;
    const QvLog log = {40, 2, 1000};
    clOpenFileRec record = {};
    record.request = QV_OPEN_PROPERTY_ROWS;
    EXPECT_EQ(open(create(&log), &record), 1);
    EXPECT_EQ(+record.property, -7);
    EXPECT_EQ(+record.lengthMs, 42u);
    EXPECT_EQ(+record.propertyDataSize, 16u);
}

}  // namespace
