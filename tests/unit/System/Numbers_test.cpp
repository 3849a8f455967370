#include "System/Numbers.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace {

TEST(Numbers, ParseAsOn32Bits) {
    struct Case {
        const char* text;
        std::uint32_t asUnsigned;
        std::int32_t asSigned;
    };
    const Case cases[] = {
        {nullptr, 0, 0},
        {"", 0, 0},
        {"x", 0, 0},
        {" 12abc", 12, 12},
        {"\t\n\v\f\r +7", 7, 7},
        {"-", 0, 0},
        {"--1", 0, 0},
        {"- 1", 0, 0},
        {"+-1", 0, 0},
        {"0x10", 0, 0},
        {"-1", 4294967295U, -1},
        {"-4294967295", 1, INT32_MIN},
        {"-4294967296", 4294967295U, INT32_MIN},
        {"2147483648", 2147483648U, INT32_MAX},
        {"-2147483649", 2147483647U, INT32_MIN},
        {"4294967295", 4294967295U, INT32_MAX},
        {"4294967297", 4294967295U, INT32_MAX},
        {"99999999999999999999999", 4294967295U, INT32_MAX},
        {"-99999999999999999999999", 4294967295U, INT32_MIN},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text != nullptr ? c.text : "null");
        EXPECT_EQ(c.asUnsigned, ParseUInt32(c.text));
        EXPECT_EQ(c.asSigned, ParseInt32(c.text));
    }
}

TEST(Numbers, BytesInOrder) {
    Bytes bytes = Hex("aa aa aa aa aa");
    PutLe(&bytes[1], 2, 0x123456);
    EXPECT_EQ("aa 56 34 aa aa", ToHex(bytes));
    EXPECT_EQ(0xAAAA3456U, GetLe(&bytes[1], 4));
    PutLe(bytes.data(), 0, 0xFF);
    CopyReversed(bytes.data(), Hex("01 02 03").data(), 3);
    EXPECT_EQ("03 02 01 aa aa", ToHex(bytes));
}

}  // namespace
