// The history where a table of cases says more than a transcript: ports outside the station, memory, and a
// file that cannot be looked at.
#include <sqlite3.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "app/StartUp.h"
#include "history/HistoryDatabase.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

namespace fs = std::filesystem;

class CHistory : public CStationTest {
  protected:
    const std::string m_file = AppFile(kHistoryFile);
};
using History = CHistory;

TEST_F(History, LivePartOfAnyPort) {
    constexpr std::uint32_t kNegative = 1U << 31;
    constexpr struct {
        std::uint32_t port;
        int value;  // place of its point 153 and, behind it, of its first energy counter; -1 for none
        int meter;
        int k1;
    } kCases[] = {
        {0, 153, 0, 100},
        {1, 153, 0, 101},
        {2, 281, 32, 102},
        {8, 1049, 224, 108},
        {9, 1177, -1, 0},
        {63, 8089, -1, 0},
        {64, -1, -1, 0},
        {255, -1, -1, 0},
        {1 + (1U << 25), -1, -1, 0},  // times 128 it is 0 again in 32 bits
        {1 + (1U << 27), -1, -1, 0},  // times 32
        {kNegative - 1, -1, -1, 0},
        {kNegative, -1, -1, 0},
        {kNegative + 1, -1, -1, 0},
        {0xFFFFFFFFU, -1, -1, 0},
    };
    for (int place = 0; place < 8192; ++place) live.SetYc(place, static_cast<std::uint32_t>(place));
    for (unsigned place = 0; place < 256; ++place) live.SetDd(static_cast<int>(place), place + (7ULL << 32));
    for (std::size_t port = 0; port < runtime.k1Cnt.size(); ++port) {
        runtime.k1Cnt[port] = static_cast<int>(100 + port);
        runtime.k2Cnt[port] = static_cast<int>(200 + port);
    }
    for (const int ports : {1, 2, 8})
        for (const auto& c : kCases) {
            RecordBody body{};
            std::uint32_t length = 0;
            runtime.m_portCount = ports;
            runtime.BuildA1_16Record(body, length, c.port);
            const auto field = [&body](std::size_t at, std::size_t size) {
                return static_cast<std::int64_t>(GetLe(body.data() + at, size));
            };
            SCOPED_TRACE(std::to_string(c.port) + " of " + std::to_string(ports));
            EXPECT_EQ(c.value < 0 ? 0 : c.value, field(97, 4));
            EXPECT_EQ(c.meter < 0 ? 0 : c.meter + (7LL << 32), field(61, 8));
            EXPECT_EQ(c.k1, field(113, 4));
            EXPECT_EQ(c.k1 == 0 ? 0 : c.k1 + 100, field(117, 4));
            EXPECT_EQ(c.port & 0xFF, static_cast<std::uint32_t>(field(8, 1)));
        }
}

// A file that cannot be looked at may be fine: it is lost only when that goes on.
TEST_F(History, FileThatCannotBeLookedAt) {
    constexpr struct {
        bool empty;
        int failures;
        bool broken;
        int seconds;
    } kCases[] = {{false, 0, false, 0}, {false, 1, false, 1}, {false, 2, true, 1}, {true, 0, true, 0}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.failures);
        fs::remove(m_file);
        if (c.empty)
            WriteText(m_file, "");
        else
            RunSql(m_file, std::string(kCreateYc) + "; INSERT INTO tagYC(portNo,timestamp) VALUES(1,'x')");
        FakeClock::Set(FakeClock::kStart);
        FailStats(m_file, c.failures);
        const std::string out = Printed([this] { StartUp(runtime); });
        FailStats("", 0);
        EXPECT_EQ(c.broken, out.find("is broken, so remove") != std::string::npos) << out;
        EXPECT_EQ(c.broken ? 0 : 1, QueryNumber(m_file, "SELECT count(*) FROM tagYC"));
        EXPECT_EQ(c.seconds * 1000000, FakeClock::Slept());
    }
}

// How much memory SQLite takes at most while `run` runs, bytes.
sqlite3_int64 Peak(const std::function<void()>& run) {
    const sqlite3_int64 before = sqlite3_memory_used();
    sqlite3_memory_highwater(1);
    run();
    return sqlite3_memory_highwater(0) - before;
}

class CHistoryOfYears : public CHistory {
  protected:
    void MakeRows(int count, int sendCount) {
        RunSql(m_file, std::string(kCreateYc) +
                           "; WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<" +
                           std::to_string(count - 1) + ") INSERT INTO tagYC(portNo,sendcount,timestamp," +
                           "chargeCnt,tradenumber) SELECT i%8+1," + std::to_string(sendCount) +
                           ",datetime('2014-01-01','+'||(i/8)||' hours'),i,hex(zeroblob(16)) FROM n");
    }
};
using HistoryOfYears = CHistoryOfYears;

TEST_F(HistoryOfYears, IsCountedAndResentInLittleMemory) {
    constexpr int kRows = 29200;
    MakeRows(kRows, 1);
    YcHistoryRecord records[8] = {};
    int count = 8;
    EXPECT_GT(4 << 20, Peak([&] {
                  Printed([&] {
                      runtime.Checkcache();
                      EXPECT_EQ(kRows, runtime.m_datacache);
                      runtime.ReadCacheYCdata(records, count);
                      runtime.DeletCacheData("2014-01-01 00:", 1);
                  });
              }));
    EXPECT_EQ(kRows / 8 - 1, runtime.m_datacache);
    EXPECT_EQ(8, count);
    EXPECT_EQ(7, records[7].chargeCnt);
}

}  // namespace
