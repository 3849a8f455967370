// A telemetry value in every form of a report.
#include "reports/YcConversion.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace {

// Raw value, scale, offset; as U, S, A, AS and N. The product is cut before the sum, or after it; the integer
// sum is exact and wraps, the float sum rounds and saturates; around 2^31 and 2^32; a raw value as signed;
// product and sum are rounded one after the other (100 x 0.1 is 10 exactly).
TEST(YcConversion, EveryForm) {
    for (const auto& row : Table(R"(
3          | 0.5    | 10         | 11 11 11 11 8
3          | -0.5   | 10         | 10 9 8 8 11
2000       | -1     | 10         | 10 4294965306 0 0 2010
1          | 1      | 16777217   | 16777218 16777218 16777216 16777216 16777215
2          | 1      | 4294967295 | 1 1 4294967295 4294967295 4294967295
2147483648 | 1      | 0          | 2147483648 2147483647 2147483648 0 0
4294967040 | 1      | 1          | 4294967041 2147483648 4294967040 0 0
65536      | 65536  | 1          | 0 2147483648 4294967295 4294967295 0
65536      | -65536 | 1          | 1 2147483649 0 0 4294967295
4294967286 | 10     | 1000       | 999 2147484647 4294967295 900 0
100        | 0.1    | 11         | 21 21 21 21 1
7500       | 0.1    | 0          | 750 750 750 750 0
1          | nan    | 7          | 7 7 0 0 0
1          | inf    | 7          | 6 2147483654 4294967295 4294967295 0
1          | -inf   | 7          | 7 2147483655 0 0 4294967295)")) {
        YcPointRecord point{};
        point.currentRaw = ParseUInt32(row[0].c_str());
        point.scale = ParseFloat(row[1].c_str());
        point.offset = ParseUInt32(row[2].c_str());
        std::string values = std::to_string(ConvertU(point));
        for (const auto convert : {ConvertS, ConvertA, ConvertAS, ConvertN})
            values += ' ' + std::to_string(convert(point));
        EXPECT_EQ(row[3], values) << row[0] << " x " << row[1] << " + " << row[2];
    }
}

}  // namespace
