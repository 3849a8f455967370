// Numbers and pieces of text, as a 32-bit machine reads them.
#include "System/Numbers.h"

#include <gtest/gtest.h>

#include "System/CommonTools.h"
#include "System/StringToolkit.h"
#include "tests/support/Bytes.h"

namespace {

TEST(Numbers, OfTexts) {
    const std::tuple<const char*, std::uint32_t, std::int32_t> kCases[] = {
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
        {"-99999999999999999999999", 4294967295, INT32_MIN}};
    for (const auto& [text, whole, withSign] : kCases) {
        EXPECT_EQ(whole, ParseUInt32(text)) << text;
        EXPECT_EQ(withSign, ParseInt32(text)) << text;
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
    const std::tuple<const char*, const char*, const char*> kCases[] = {{"=", "a=b=c", "<a><b=c>"},
                                                                        {"=", "key=", "<key><>"},
                                                                        {"=", "=5", "<><5>"},
                                                                        {"=", "abc", "<abc>"},
                                                                        {"=", "", ""},
                                                                        {"", "a=b", "<a=b>"},
                                                                        {",;", "a,b;c", "<a><b><c>"},
                                                                        {";,", "a,b;c", "<a,b><c>"},
                                                                        {",,", "a,,b", "<a><><b>"}};
    for (const auto& [delimiters, text, pieces] : kCases) {
        CStringList list;
        CStringList::Split(CString(text), delimiters, list);
        std::string all;
        for (int i = 0; i < list.Count(); ++i) all += '<' + std::string(list.At(i).c_str()) + '>';
        EXPECT_EQ(pieces, all);
        EXPECT_TRUE(list.At(list.Count()) == "" && list.At(-1) == "");
    }
}

}  // namespace
