// Clocks that are set, and what is stamped with their time.
#include <sys/time.h>

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

}  // namespace
