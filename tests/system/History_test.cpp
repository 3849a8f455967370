// The real program through hours and days of charging records.
#include <gmock/gmock.h>

#include <random>

#include "System/AppFiles.h"
#include "ipc/SettingsCommand.h"
#include "reports/Messages.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kPorts = 8;
constexpr std::int64_t kHour = 3600;

class CEmptyStation : public testing::Test {
  protected:
    CEmptyStation() {
        CleanStation();
        MakeConfig(kPorts);
    }
    ~CEmptyStation() override { CleanStation(); }
};

class CHistoryRun : public CEmptyStation {
  protected:
    CHistoryRun() {
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
        for (const Received& received : ReadAll()) {
            const Bytes& frame = received.frame;
            if ((frame[2] << 8 | frame[3]) == kCodeA1_16)
                heads[frame.at(14)].push_back(frame.size() == 127 ? ToHex(&frame[14], 9) : "of another size");
        }
    }
    static std::vector<std::string> Rows(const std::string& sql) {
        return QueryRows(AppFile(kHistoryFile), sql);
    }

    CLiveValues live;
    CStationProcess process;
    std::vector<std::string> heads[kPorts + 1];
};
using HistoryRun = CHistoryRun;

// The head of a record of `hour`, counted from the midnight before the start (5 March 2024).
std::string Head(int port, int hour, int status) {
    char text[64];
    std::snprintf(text, sizeof text, "%02d 00 00 %02d %02d 03 24 20 %02d", port, hour % 24, 5 + hour / 24,
                  status);
    return text;
}

TEST_F(HistoryRun, TwoDays) {
    SendFrame(SettingsFrame({1000, 5, 5, 5, 5, 65535, 60}));
    const auto pending = [] {
        return Rows("SELECT portNo, sendcount, timestamp FROM tagYC WHERE sendcount BETWEEN 1 AND 5");
    };
    RunUntil(15 * kHour);  // 00:45 of the first night: sent live, and again at 00:40
    EXPECT_EQ(8U, pending().size());
    EXPECT_EQ("1|2|2024-03-06 00:00:00", pending()[0]);
    RunUntil(17 * kHour);
    for (int port = 1; port <= kPorts; ++port) {
        EXPECT_EQ(8U - static_cast<unsigned>(port - 1), pending().size());
        SendFrame(Hex("0b 00 85 2f 0" + std::to_string(port) + " 00 00 00 06 03 24 20 00"));
        process.RunPasses(6);
    }
    EXPECT_THAT(pending(), IsEmpty());
    RunUntil(39 * kHour);
    EXPECT_EQ(8U, pending().size());
    RunUntil(48 * kHour);
    EXPECT_THAT(pending(), IsEmpty());  // the second night's were given up
    for (int port = 1; port <= kPorts; ++port) {
        std::vector<std::string> expected;
        for (int hour = 10; hour < 10 + 48; ++hour) {
            expected.push_back(Head(port, hour, 0));
            if (hour >= 24 && hour < 24 + 3) expected.push_back(Head(port, 24, 1));
            if (hour >= 48 && hour < 48 + 5) expected.push_back(Head(port, 48, 1));
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
    for (int pass = 1; pass <= 5 + 24 + 1 + 24; ++pass) {
        process.RunPasses(1);
        TakeRecords();
        EXPECT_EQ(static_cast<std::size_t>(std::max(0, pass - 30)), heads[3].size()) << pass;
    }
    std::vector<std::string> day;
    for (int hour = 24; hour < 48; ++hour) day.push_back(Head(3, hour, 1));
    EXPECT_EQ(day, heads[3]);
}

// Every hour the process dies once, at some change that it makes to the file, and is started again.
TEST_F(HistoryRun, KilledWhileItWrites) {
    constexpr int kDeaths = 100;
    std::mt19937 random(3);
    int died = 0;
    std::vector<std::string> complete;
    for (int i = 0; i < kDeaths; ++i) {
        CStationProcess fresh;
        fresh.SetTime(CStationProcess::kStart + 14 * kHour + (i + 1) * kHour + 895);  // hh:59:55
        fresh.RunPasses(45);
        if (fresh.RunIntoKill(1 + static_cast<std::uint32_t>(random() % 90), 20)) ++died;
        if (i % 2 == 0) continue;  // what the next start finds and mends by itself
        EXPECT_THAT(Rows("PRAGMA integrity_check"), ElementsAre("ok")) << i;
    }
    EXPECT_LT(kDeaths * 3 / 4, died);
    EXPECT_THAT(
        Rows("SELECT * FROM tagYC WHERE mvalue <> portNo OR length(tradenumber) <> 32 OR tradeelec <> '0' "
             "OR fretime <> '' OR chargeCnt <> '0' OR dcK2Cnt <> '0' OR "
             "sendcount <> (timestamp LIKE '% 00:%') OR portNo NOT BETWEEN 1 AND 8"),
        IsEmpty());
    EXPECT_THAT(Rows("SELECT * FROM tagYC GROUP BY portNo, timestamp HAVING count(*) > 1"), IsEmpty());
    // Ports are written in turn, so those of an hour are always the first ones.
    EXPECT_THAT(Rows("SELECT timestamp FROM tagYC GROUP BY timestamp HAVING max(portNo) <> count(*)"),
                IsEmpty());
    EXPECT_LT(kDeaths, std::stoi(Rows("SELECT count(*) FROM tagYC")[0]));
}

}  // namespace
