// The real program through hours and days of charging records.
#include <gmock/gmock.h>

#include "System/AppFiles.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr std::int64_t kHour = 3600;

class CHistoryRun : public testing::Test, CCleanBothEnds {
  protected:
    CHistoryRun() {
        MakeConfig(kPorts);
        for (int port = 1; port <= kPorts; ++port) live.SetDd((port - 1) * 32, static_cast<unsigned>(port));
    }

    // Lets the process run on until `seconds` after its start, taking what it sends before the queue is full.
    void RunUntil(std::int64_t seconds) {
        constexpr std::uint32_t kRoom = 7;
        while (process.Time() < CStationProcess::kStart + seconds && !HasFatalFailure()) {
            process.RunPasses(kRoom);
            TakeRecords();
        }
    }
    // Takes the waiting messages and keeps the heads of the charging records: port, time, status.
    void TakeRecords() {
        for (const std::string& message : ReadNamed())
            if (message.rfind("A1_16 ", 0) == 0)
                heads[message.at(31) - '0'] +=
                    message.size() == 6 + 121 * 3 - 1 ? message.substr(30, 26) + "\n" : "of another size\n";
    }
    static std::vector<std::string> Rows(const std::string& sql) {
        return QueryRows(AppFile(kHistoryFile), sql);
    }
    // The head of a record of `hour`, counted from the midnight before the start (5 March 2024).
    static std::string Head(int port, int hour, int status) {
        char text[64];
        std::snprintf(text, sizeof text, "%02d 00 00 %02d %02d 03 24 20 %02d\n", port, hour % 24,
                      5 + hour / 24, status);
        return text;
    }

    CLiveValues live;
    CStationProcess process;
    std::string heads[kPorts + 1];
};
using HistoryRun = CHistoryRun;

TEST_F(HistoryRun, TwoDays) {
    SendFrame(SettingsFrame({1000, 5, 5, 5, 5, 65535, 60}));
    const auto pending = [] {
        return Rows("SELECT portNo, sendcount, timestamp FROM tagYC WHERE sendcount BETWEEN 1 AND 5").size();
    };
    RunUntil(17 * kHour);
    for (std::size_t port = 1; port <= kPorts; ++port) {
        EXPECT_EQ(9 - port, pending());
        SendFrame(Hex("0b 00 85 2f 0" + std::to_string(port) + " 00 00 00 06 03 24 20 00"));
        process.RunPasses(6);
    }
    EXPECT_EQ(0U, pending());
    RunUntil(39 * kHour);
    EXPECT_EQ(8U, pending());
    RunUntil(48 * kHour);
    EXPECT_EQ(0U, pending());  // the second night's were given up
    for (int port = 1; port <= kPorts; ++port) {
        std::string expected;
        for (int hour = 10; hour < 10 + 48; ++hour) {
            expected += Head(port, hour, 0);
            if (hour >= 24 && hour < 24 + 3) expected += Head(port, 24, 1);
            if (hour >= 48 && hour < 48 + 5) expected += Head(port, 48, 1);
        }
        EXPECT_EQ(expected, heads[port]);
    }
    EXPECT_THAT(Rows("SELECT count(*), count(DISTINCT timestamp), sum(sendcount), sum(mvalue <> portNo) "
                     "FROM tagYC GROUP BY portNo"),
                testing::AllOf(testing::SizeIs(8), testing::Each("48|48|6|0")));
    EXPECT_EQ("", process.Errors());

    // A day that is over, asked for: five passes, the answer's pauses, and then a record in each pass.
    SendFrame(SettingsFrame({999}));
    while (Waiting() > 0) process.RunPasses(1);
    heads[3].clear();
    SendFrame(Hex("08 00 85 2c 03 06 03 24 20 18"));
    std::string day;
    for (int pass = 1; pass <= 5 + 24 + 1 + 24; ++pass) {
        process.RunPasses(1);
        TakeRecords();
        if (pass > 30) day += Head(3, pass - 31 + 24, 1);
        ASSERT_EQ(day, heads[3]) << pass;
    }
}

}  // namespace
