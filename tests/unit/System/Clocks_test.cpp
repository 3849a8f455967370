// Dates, clocks that are set, and what is stamped with their time.
#include <sys/time.h>

#include <array>
#include <csignal>

#include "System/CommonTools.h"
#include "System/DateTime.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr std::time_t kAugust = 1693363452;  // 2023-08-30 10:44:12 local time

// What the clock setters ask of the system; a `clockResult` of -1 refuses.
struct Asked {
    int clockResult = 0;
    timeval clock{};
    std::string command;
} asked;

class CClocks : public CEmptyStationTest {
  protected:
    CClocks() { asked = {}; }
};
using CommonTools = CClocks;

}  // namespace

extern "C" {

int settimeofday(const timeval* value, const struct timezone* /*zone*/) noexcept {
    asked.clock = *value;
    return asked.clockResult;
}

int system(const char* command) {
    asked.command += command;
    return 0;
}

}  // extern "C"

namespace {

TEST_F(CommonTools, SetClock) {
    EXPECT_EQ(0, CCommonTools::SetSystemTime("2023-08-30 10:44:12"));
    EXPECT_EQ(kAugust, asked.clock.tv_sec);
    EXPECT_EQ(0, asked.clock.tv_usec);
    EXPECT_EQ("", asked.command);  // only the one from numbers writes the hardware clock
    EXPECT_EQ(0, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, 61001));
    EXPECT_EQ(kAugust - 12 + 61, asked.clock.tv_sec);
    EXPECT_EQ(1000, asked.clock.tv_usec);
    EXPECT_EQ("hwclock - w", asked.command);
    asked = {-1, {}, ""};
    EXPECT_EQ("Set system datatime error!/nSet system datatime error!/n", Printed([] {
                  EXPECT_EQ(-1, CCommonTools::SetSystemTime("2023-08-30 10:44:12"));
                  EXPECT_EQ(-1, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, 0));
              }));
    EXPECT_EQ("", asked.command);
    // Half a date is none, and touches no clock.
    asked = {0, {}, ""};
    for (const char* text : {"", "2023", "2023-08-30", "2023-08-30 10:44", "2023/08/30 10:44:12"})
        EXPECT_EQ("Set system datatime error!/n",
                  Printed([&] { EXPECT_EQ(-1, CCommonTools::SetSystemTime(text)); }));
    EXPECT_EQ(0, asked.clock.tv_sec);
}

TEST_F(CommonTools, Records) {
    FakeClock::Set(kAugust);
    Bytes record(17, 0xEE);
    EXPECT_EQ(0, CCommonTools::StampRecord(record.data(), Hex("11 12 13 14 15 16 17 18").data(), 0xC2, 97));
    EXPECT_EQ("11 12 13 14 15 16 17 18 c2 23 08 30 10 44 12 97 ee", ToHex(record));
    const CDateTime now("at 2023-01-30T10h44m12", "at %d-%d-%dT%dh%dm%d");
    EXPECT_EQ((std::array{2023, 1, 30, 10, 44, 12}),
              (std::array{now.Year(), now.Month(), now.Day(), now.Hour(), now.Minute(), now.Second()}));
    EXPECT_EQ("2023-01-30", now.DateText());
    EXPECT_EQ("", now.Format(std::string(256, 'x').c_str()));
}

// So many seconds later, and moved by so many months, which is not what a calendar would do.
TEST(DateTime, Moves) {
    for (const auto& row : Table(R"(
2024/3/5 9:45:00    | -1          | 1   | 2024-03-05 09:45:00 | 2024-03-05 09:44:59 | 2024-05-05 09:45:00
2023/12/31 23:59:59 | 1           | 12  | 2023-12-31 23:59:59 | 2024-01-01 00:00:00 | 2025-10-31 23:59:59
2024/3/5 9:45:00    | -2147483648 | -15 | 2024-03-05 09:45:00 | 1956-02-16 06:30:52 | 2023-01-05 09:45:00
2024/1/31           | 0           | 0   | 2024-01-31 00:00:00 | 2024-01-31 00:00:00 | 2023-12-31 00:00:00
2024/11/30          | 0           | 5   | 2024-11-30 00:00:00 | 2024-11-30 00:00:00 | 2026-01-30 00:00:00
2023/2/30           | 0           | 2   | 2023-03-02 00:00:00 | 2023-03-02 00:00:00 | 2023-06-02 00:00:00)")) {
        CDateTime later(row[0].c_str());
        later.AddSeconds(std::stoi(row[1]));
        CDateTime moved(row[0].c_str());
        moved.AddMonths(std::stoi(row[2]));
        EXPECT_EQ(row[3], CDateTime(row[0].c_str()).FullText());
        EXPECT_EQ(row[4], later.FullText());
        EXPECT_EQ(row[5], moved.FullText());
    }
}

TEST(DateTime, NoneEndsTheProcess) {
    const std::pair<std::array<int, 6>, int> kCases[] = {
        {{1899, 1, 1, 0, 0, 0}, 26},  {{2023, 0, 1, 0, 0, 0}, 31},  {{2023, 13, 32, 24, 60, 60}, 31},
        {{2023, 1, 0, 0, 0, 0}, 36},  {{2023, 1, 32, 0, 0, 0}, 36}, {{2023, 1, 1, 24, 0, 0}, 41},
        {{2023, 1, 1, -1, 0, 0}, 41}, {{2023, 1, 1, 0, 60, 0}, 46}, {{2023, 1, 1, 0, 0, 60}, 51}};
    for (const auto& [p, line] : kCases)
        EXPECT_EXIT(CDateTime(p[0], p[1], p[2], p[3], p[4], p[5]), testing::KilledBySignal(SIGABRT),
                    "System/DateTime:" + std::to_string(line) +
                        ": void CDateTime::Init\\(int, int, int, int, int, int\\): Assertion `0' failed");
    EXPECT_EXIT(CDateTime("2023/8"), testing::KilledBySignal(SIGABRT), "System/DateTime:36: ");
}

}  // namespace
