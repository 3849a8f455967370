// Numbers and pieces of text, as a 32-bit machine reads them.
#include "System/Numbers.h"

#include <gtest/gtest.h>

#include "System/CommonTools.h"
#include "System/StringToolkit.h"
#include "tests/support/Bytes.h"

namespace {

TEST(Numbers, OfTexts) {
    const struct {
        const char* text;
        std::uint32_t whole;
        std::int32_t withSign;
    } kCases[] = {
        {"x", 0, 0},
        {"12abc", 12, 12},
        {"+7", 7, 7},
        {"- 1", 0, 0},
        {"+-1", 0, 0},
        {"-1", 4294967295, -1},
        {"-4294967296", 4294967295, INT32_MIN},
        {"-2147483649", 2147483647, INT32_MIN},
        {"4294967297", 4294967295, INT32_MAX},
        {"99999999999999999999999", 4294967295, INT32_MAX},
        {"-99999999999999999999999", 4294967295, INT32_MIN},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.whole, ParseUInt32(c.text)) << c.text;
        EXPECT_EQ(c.withSign, ParseInt32(c.text)) << c.text;
    }
}

// What is no digit is 0, upper case too.
TEST(Numbers, TwoCharactersPerByte) {
    for (const auto& [text, bytes] :
         {std::pair{"0a1f", "0a 1f ee"}, {"0A1F", "00 10 ee"}, {"abc", "ab c0 ee"}, {"g/9", "00 90 ee"}}) {
        Bytes packed(3, 0xEE);
        EXPECT_EQ(0, CCommonTools::HexToBytes(packed.data(), text));
        EXPECT_EQ(bytes, ToHex(packed)) << text;
    }
}

// Delimiters are used one after the other.
TEST(StringToolkit, Split) {
    const struct {
        const char* delimiters;
        const char* text;
        const char* pieces;
    } kCases[] = {
        {"=", "a=b=c", "<a><b=c>"},
        {"=", "key=", "<key><>"},
        {"=", "=5", "<><5>"},
        {"=", "abc", "<abc>"},
        {"=", "", ""},
        {"", "a=b", "<a=b>"},
        {",;", "a,b;c", "<a><b><c>"},
        {";,", "a,b;c", "<a,b><c>"},
        {",,", "a,,b", "<a><><b>"},
    };
    for (const auto& c : kCases) {
        CStringList list;
        CStringList::Split(CString(c.text), c.delimiters, list);
        std::string pieces;
        for (int i = 0; i < list.Count(); ++i) pieces += '<' + std::string(list.At(i).c_str()) + '>';
        EXPECT_EQ(c.pieces, pieces) << c.delimiters << ' ' << c.text;
        EXPECT_TRUE(list.At(list.Count()) == "" && list.At(-1) == "");
    }
}

}  // namespace
