// Clocks, dates, numbers and pieces of text, as a 32-bit machine reads them.
#include "System/CommonTools.h"

#include <sys/time.h>

#include <csignal>

#include "System/DateTime.h"
#include "System/Numbers.h"
#include "System/StringToolkit.h"
#include "tests/support/TestRuntime.h"

namespace {

using CommonTools = CEmptyStationTest;

constexpr std::time_t kAugust = 1693363452;  // 2023-08-30 10:44:12 local time

// What the clock setters ask of the system; a `result` of -1 refuses.
struct {
    int result = 0;
    timeval clock{};
    std::string command;
} asked;

}  // namespace

extern "C" int settimeofday(const timeval* value, const struct timezone* /*zone*/) noexcept {
    asked.clock = *value;
    return asked.result;
}

extern "C" int system(const char* command) {
    asked.command += command;
    return 0;
}

namespace {

TEST_F(CommonTools, ClocksStampsAndDigits) {
    EXPECT_EQ(0, CCommonTools::SetSystemTime("2023-08-30 10:44:12"));
    EXPECT_EQ(kAugust, asked.clock.tv_sec);
    EXPECT_EQ(0, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, 13001));
    EXPECT_EQ(kAugust + 1, asked.clock.tv_sec);
    EXPECT_EQ(1000, asked.clock.tv_usec);
    asked.result = -1;
    EXPECT_EQ("Set system datatime error!/n",
              Printed([] { EXPECT_EQ(-1, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, 0)); }));
    EXPECT_EQ("hwclock - w", asked.command);  // once, only where one is set from numbers
    FakeClock::Set(kAugust);
    Bytes record(17, 0xEE), packed(6, 0xEE);
    EXPECT_EQ(0, CCommonTools::StampRecord(record.data(), Hex("11 12 13 14 15 16 17 18").data(), 0xC2, 97));
    EXPECT_EQ("11 12 13 14 15 16 17 18 c2 23 08 30 10 44 12 97 ee", ToHex(record));
    EXPECT_EQ(0, CCommonTools::HexToBytes(packed.data(), "0a1F/9abc"));  // no digit is 0, upper case too
    EXPECT_EQ("0a 10 09 ab c0 ee", ToHex(packed));
}

// So many seconds later, and moved by so many months, which is not what a calendar would do.
TEST(DateTime, Moves) {
    for (const auto& row : Table(R"(
2023/12/31 23:59:59 | 1           | 12  | 2024-01-01 00:00:00 | 2025-10-31 23:59:59
2024/3/5 9:45:00    | -2147483648 | -15 | 1956-02-16 06:30:52 | 2023-01-05 09:45:00)")) {
        CDateTime later(row[0].c_str());
        CDateTime moved = later;
        later.AddSeconds(std::stoi(row[1]));
        moved.AddMonths(std::stoi(row[2]));
        EXPECT_EQ(row[3], later.FullText());
        EXPECT_EQ(row[4], moved.FullText());
    }
}

TEST(DateTime, NoneEndsTheProcess) {
    for (const auto& row :
         Table("1899/1/1|26\n2023/13/1|31\n2023/8|36\n2023/1/1 24:0:0|41\n2023/1/1 0:0:60|51"))
        EXPECT_EXIT(CDateTime date(row[0].c_str()), testing::KilledBySignal(SIGABRT),
                    "System/DateTime:" + row[1] +
                        ": void CDateTime::Init\\(int, int, int, int, int, int\\): Assertion `0' failed");
}

TEST(Numbers, OfTexts) {
    for (const auto& row : Table("12abc|12|12\n+7|7|7\n- 1|0|0\n+-1|0|0\n-1|4294967295|-1\n"
                                 "-2147483649|2147483647|-2147483648\n4294967297|4294967295|2147483647\n"
                                 "-99999999999999999999999|4294967295|-2147483648")) {
        EXPECT_EQ(row[1], std::to_string(ParseUInt32(row[0].c_str()))) << row[0];
        EXPECT_EQ(row[2], std::to_string(ParseInt32(row[0].c_str()))) << row[0];
    }
}

TEST(StringToolkit, SplitUsesDelimitersOneAfterTheOther) {
    CStringList list;  // nothing gives nothing
    for (const char* text : {"", "a,b;c", "a;b,c", "d,"}) CStringList::Split(CString(text), ",;", list);
    std::string pieces;
    for (int i = 0; i < list.Count(); ++i) pieces += '<' + std::string(list.At(i).c_str()) + '>';
    EXPECT_EQ("<a><b><c><a;b><c><d><>", pieces);
    EXPECT_TRUE(list.At(list.Count()) == "" && list.At(-1) == "");
}

}  // namespace
