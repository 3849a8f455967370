// Numbers and pieces of text, as a 32-bit machine reads them.
#include "System/Numbers.h"

#include <gtest/gtest.h>

#include "System/CommonTools.h"
#include "System/StringToolkit.h"
#include "tests/support/Bytes.h"

namespace {

TEST(Numbers, OfTexts) {
    for (const auto& row :
         Table("x|0|0\n12abc|12|12\n+7|7|7\n- 1|0|0\n+-1|0|0\n-1|4294967295|-1\n"
               "-4294967296|4294967295|-2147483648\n-2147483649|2147483647|-2147483648\n"
               "4294967297|4294967295|2147483647\n99999999999999999999999|4294967295|2147483647\n"
               "-99999999999999999999999|4294967295|-2147483648")) {
        EXPECT_EQ(row[1], std::to_string(ParseUInt32(row[0].c_str()))) << row[0];
        EXPECT_EQ(row[2], std::to_string(ParseInt32(row[0].c_str()))) << row[0];
    }
}

// What is no digit is 0, upper case too.
TEST(Numbers, TwoCharactersPerByte) {
    for (const auto& row : Table("0a1f|0a 1f ee\n0A1F|00 10 ee\nabc|ab c0 ee\ng/9|00 90 ee")) {
        Bytes packed(3, 0xEE);
        EXPECT_EQ(0, CCommonTools::HexToBytes(packed.data(), row[0].c_str()));
        EXPECT_EQ(row[1], ToHex(packed)) << row[0];
    }
}

// Delimiters are used one after the other.
TEST(StringToolkit, Split) {
    for (const auto& row :
         Table("=|a=b=c|<a><b=c>\n=|key=|<key><>\n=|=5|<><5>\n=|abc|<abc>\n|a=b|<a=b>\n,;|a,b;c|<a><b><c>\n"
               ";,|a,b;c|<a,b><c>\n,,|a,,b|<a><><b>")) {
        CStringList list;
        CStringList::Split(CString(""), "=", list);  // nothing gives nothing
        CStringList::Split(CString(row[1].c_str()), row[0].c_str(), list);
        std::string pieces;
        for (int i = 0; i < list.Count(); ++i) pieces += '<' + std::string(list.At(i).c_str()) + '>';
        EXPECT_EQ(row[2], pieces);
        EXPECT_TRUE(list.At(list.Count()) == "" && list.At(-1) == "");
    }
}

}  // namespace
