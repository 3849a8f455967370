#include "System/DateTime.h"

#include "tests/support/TestRuntime.h"

namespace {

using DateTime = CEmptyStationTest;

TEST_F(DateTime, Constructions) {
    struct Case {
        CDateTime made;
        const char* text;
    };
    const Case cases[] = {
        {CDateTime(std::time_t{0}), "1970-01-01 08:00:00"},
        {CDateTime::Now(), "2024-03-05 09:45:00"},
        {CDateTime(2023, 8, 30), "2023-08-30 00:00:00"},
        {CDateTime(2023, 12, 31, 23, 59, 59), "2023-12-31 23:59:59"},
        {CDateTime("2023/8/30 10:44:12"), "2023-08-30 10:44:12"},
        {CDateTime("2023/2/30 10:00:00"), "2023-03-02 10:00:00"},
        {CDateTime("2024/2/30 10:00:00"), "2024-03-01 10:00:00"},
        {CDateTime("2023/4/31"), "2023-05-01 00:00:00"},
        {CDateTime("at 2023-08-30T10h44m12", "at %d-%d-%dT%dh%dm%d"), "2023-08-30 10:44:12"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.text, c.made.FullText());
        EXPECT_EQ(std::string(c.text, 10), c.made.DateText());
    }
}

TEST_F(DateTime, Parts) {
    const CDateTime now(2023, 1, 30, 10, 44, 12);
    EXPECT_EQ("2023 1 30 10 44 12", std::to_string(now.Year()) + " " + std::to_string(now.Month()) + " " +
                                        std::to_string(now.Day()) + " " + std::to_string(now.Hour()) + " " +
                                        std::to_string(now.Minute()) + " " + std::to_string(now.Second()));
    EXPECT_EQ("30.01.23", now.Format("%d.%m.%y"));
    EXPECT_EQ(255U, now.Format(std::string(255, 'x').c_str()).size());
    EXPECT_EQ("", now.Format(std::string(256, 'x').c_str()));
}

TEST_F(DateTime, Additions) {
    struct Case {
        const char* from;
        std::int32_t seconds;
        int months;  // 0 adds none: adding 0 moves the date too
        const char* to;
    };
    const Case cases[] = {
        {"2023/12/31 23:59:59", 1, 0, "2024-01-01 00:00:00"},
        {"2024/03/01 00:00:00", -1, 0, "2024-02-29 23:59:59"},
        {"2024/03/05 09:45:00", -2147483647 - 1, 0, "1956-02-16 06:30:52"},
        {"2024/03/05 09:45:00", 0, 1, "2024-05-05 09:45:00"},
        {"2024/03/05 09:45:00", 0, 12, "2025-04-05 09:45:00"},
        {"2024/03/05 09:45:00", 0, -3, "2024-01-05 09:45:00"},
        {"2024/03/05 09:45:00", 0, -15, "2023-01-05 09:45:00"},
        {"2024/11/30 00:00:00", 0, 5, "2026-01-30 00:00:00"},
        {"2023/01/31 00:00:00", 0, 2, "2023-03-03 00:00:00"},
    };
    for (const Case& c : cases) {
        CDateTime moved(c.from);
        if (c.months != 0)
            moved.AddMonths(c.months);
        else
            moved.AddSeconds(c.seconds);
        EXPECT_EQ(c.to, moved.FullText()) << c.from;
    }
    CDateTime january(2024, 1, 31);
    january.AddMonths(0);
    EXPECT_EQ("2023-12-31", january.DateText());
}

TEST_F(DateTime, RangeErrorsStopTheProcess) {
    struct Case {
        int parts[6];
        const char* line;
    };
    const Case cases[] = {
        {{1899, 1, 1, 0, 0, 0}, "26"},      {{-1, -1, -1, -1, -1, -1}, "26"}, {{2023, 0, 1, 0, 0, 0}, "31"},
        {{2023, 13, 32, 24, 60, 60}, "31"}, {{2023, 1, 0, 0, 0, 0}, "36"},    {{2023, 1, 32, 0, 0, 0}, "36"},
        {{2023, 1, 1, 24, 0, 0}, "41"},     {{2023, 1, 1, -1, 0, 0}, "41"},   {{2023, 1, 1, 0, 60, 0}, "46"},
        {{2023, 1, 1, 0, -1, 0}, "46"},     {{2023, 1, 1, 0, 0, 60}, "51"},   {{2023, 1, 1, 0, 0, -1}, "51"},
    };
    const auto report = [](const std::string& line) {
        return ": System/DateTime:" + line +
               ": void CDateTime::Init\\(int, int, int, int, int, int\\): Assertion `0' failed\\.\n";
    };
    for (const Case& c : cases) {
        const int* p = c.parts;
        EXPECT_DEATH(CDateTime(p[0], p[1], p[2], p[3], p[4], p[5]), report(c.line));
    }
    EXPECT_DEATH(CDateTime("no date"), report("26"));
    EXPECT_DEATH(CDateTime("2023/8"), report("36"));
}

}  // namespace
