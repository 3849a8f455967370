// A telemetry value in every form of a report.
#include "reports/YcConversion.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(YcConversion, EveryForm) {
    const struct {
        std::uint32_t raw;
        float scale;
        std::uint32_t offset;
        std::array<std::uint32_t, 5> values;  // U, S, A, AS, N
    } kCases[] = {
        // The product cut before the sum, or after it.
        {3, 0.5F, 10, {11, 11, 11, 11, 8}},
        {3, -0.5F, 10, {10, 9, 8, 8, 11}},
        {2000, -1, 10, {10, 4294965306, 0, 0, 2010}},
        // The integer sum is exact and wraps, the float sum rounds and saturates.
        {1, 1, 16777217, {16777218, 16777218, 16777216, 16777216, 16777215}},
        {2, 1, 4294967295, {1, 1, 4294967295, 4294967295, 4294967295}},
        // Around 2^31 and 2^32.
        {2147483648, 1, 0, {2147483648, 2147483647, 2147483648, 0, 0}},
        {4294967040, 1, 1, {4294967041, 2147483648, 4294967040, 0, 0}},
        {65536, 65536, 1, {0, 2147483648, 4294967295, 4294967295, 0}},
        {65536, -65536, 1, {1, 2147483649, 0, 0, 4294967295}},
        // The raw value as signed.
        {4294967286, 10, 1000, {999, 2147484647, 4294967295, 900, 0}},
        // Product and sum are rounded one after the other: 100 x 0.1 is 10 exactly.
        {100, 0.1F, 11, {21, 21, 21, 21, 1}},
        {7500, 0.1F, 0, {750, 750, 750, 750, 0}},
        {1, std::numeric_limits<float>::quiet_NaN(), 7, {7, 7, 0, 0, 0}},
        {1, kInfinity, 7, {6, 2147483654, 4294967295, 4294967295, 0}},
        {1, -kInfinity, 7, {7, 2147483655, 0, 0, 4294967295}},
    };
    for (const auto& c : kCases) {
        YcPointRecord point{};
        point.currentRaw = c.raw;
        point.scale = c.scale;
        point.offset = c.offset;
        EXPECT_EQ(c.values, (std::array{ConvertU(point), ConvertS(point), ConvertA(point), ConvertAS(point),
                                        ConvertN(point)}))
            << c.raw << " x " << c.scale << " + " << c.offset;
    }
}

}  // namespace
