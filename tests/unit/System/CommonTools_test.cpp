#include "System/CommonTools.h"

#include <sys/time.h>

#include <cstdlib>

#include "tests/support/TestRuntime.h"

namespace {

constexpr std::time_t kAugust = 1693363452;  // 2023-08-30 10:44:12 local time

// What the clock setters asked of the system; a `clockResult` of -1 refuses.
struct Asked {
    int clockResult = 0;
    timeval clock{};
    std::vector<std::string> commands;
};
Asked asked;

class CCommonToolsTest : public CEmptyStationTest {
  protected:
    CCommonToolsTest() { asked = {}; }
};
using CommonTools = CCommonToolsTest;

}  // namespace

extern "C" {

int settimeofday(const timeval* value, const struct timezone* /*zone*/) noexcept {
    asked.clock = *value;
    return asked.clockResult;
}

int system(const char* command) {
    asked.commands.emplace_back(command);
    return 0;
}

}  // extern "C"

namespace {

TEST_F(CommonTools, SetClockFromText) {
    EXPECT_EQ(0, CCommonTools::SetSystemTime("2023-08-30 10:44:12"));
    EXPECT_EQ(kAugust, asked.clock.tv_sec);
    EXPECT_EQ(0, asked.clock.tv_usec);
    EXPECT_TRUE(asked.commands.empty());
}

TEST_F(CommonTools, SetClockFromNumbers) {
    struct Case {
        int milliseconds;
        std::time_t second;
        suseconds_t micros;
    };
    for (const Case& c :
         {Case{0, 0, 0}, Case{12345, 12, 345000}, Case{59999, 59, 999000}, Case{61001, 61, 1000}}) {
        asked = {};
        EXPECT_EQ(0, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, c.milliseconds));
        EXPECT_EQ(kAugust - 12 + c.second, asked.clock.tv_sec);
        EXPECT_EQ(c.micros, asked.clock.tv_usec);
        EXPECT_EQ(std::vector<std::string>{"hwclock - w"}, asked.commands);
    }
}

TEST_F(CommonTools, RefusedClock) {
    asked.clockResult = -1;
    const std::string text = "Set system datatime error!/n";
    EXPECT_EQ(text, Capture([] { EXPECT_EQ(-1, CCommonTools::SetSystemTime("2023-08-30 10:44:12")); }).out);
    EXPECT_EQ(text, Capture([] { EXPECT_EQ(-1, CCommonTools::SetSystemTime(2023, 8, 30, 10, 44, 0)); }).out);
    EXPECT_TRUE(asked.commands.empty());
}

TEST_F(CommonTools, HexToBytes) {
    const std::pair<const char*, const char*> cases[] = {{"", "ee ee ee"},
                                                         {"0a1f", "0a 1f ee"},
                                                         {"0A1F", "00 10 ee"},
                                                         {"abc", "ab c0 ee"},
                                                         {"g/9", "00 90 ee"}};
    for (const auto& [text, expected] : cases) {
        Bytes bytes(3, 0xEE);
        EXPECT_EQ(0, CCommonTools::HexToBytes(bytes.data(), text));
        EXPECT_EQ(expected, ToHex(bytes)) << text;
    }
}

TEST_F(CommonTools, StampRecord) {
    FakeClock::Set(kAugust);
    const Bytes given = Hex("11 12 13 14 15 16 17 18 ff");
    for (const auto& [value, last] : {std::pair{7, "07"}, {99, "99"}, {0, "00"}}) {
        Bytes record(17, 0xEE);
        EXPECT_EQ(0, CCommonTools::StampRecord(record.data(), given.data(), 0xC2,
                                               static_cast<std::uint8_t>(value)));
        EXPECT_EQ("11 12 13 14 15 16 17 18 c2 23 08 30 10 44 12 " + std::string(last) + " ee", ToHex(record));
    }
}

}  // namespace
