// The history where a table of cases says more than a transcript: ports outside the station, indexes that may
// not show, memory, and a file that cannot be looked at.
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <random>
#include <regex>

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
    const std::string file = AppFile(kHistoryFile);
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

// Our own table, and such as another program could have made.
struct Layout {
    const char* name;
    const char* create;
    const char* id;  // what a row begins with; # is a number
    int indexes = 1;
};
constexpr char kRest[] =
    "portNo INTERGER(1), sendcount INTEGER(1),mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,fvalue_1,"
    "fvalue_2,fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,timestamp TimeStamp NOT NULL,chargeCnt,"
    "chargeTime,dcK1Cnt,dcK2Cnt";
constexpr char kCountIndexes[] = "SELECT count(*) FROM sqlite_master WHERE type='index' AND sql NOT NULL";
void PrintTo(const Layout& layout, std::ostream* out) {
    *out << layout.name;
}
constexpr Layout kLayouts[] = {
    {"own", "id INTEGER PRIMARY KEY", "#", 4},
    {"text", "id INT PRIMARY KEY", "#"},
    {"descending", "id INTEGER PRIMARY KEY DESC", "#"},
    {"plain", "id", "#%3"},
    {"nulls", "id INTEGER UNIQUE", "NULLIF(#%3,#%3)"},
    {"other", "number INTEGER PRIMARY KEY, id", "#, #%4"},
    {"unnumbered", "number TEXT", "'x'"},
};

class CHistoryIndexes : public CHistory, public testing::WithParamInterface<Layout> {
  protected:
    std::string Any(std::initializer_list<const char*> values) {
        return data(values)[random() % values.size()];
    }
    // A small table of few ports and times; its rows are told apart by their charge counts.
    void MakeTable() {
        fs::remove(file);
        const std::string table = "CREATE TABLE tagYC(" + std::string(GetParam().create) + "," + kRest + ");";
        std::string rows;
        std::vector<int> numbers(1 + random() % 12);
        std::iota(numbers.begin(), numbers.end(), 1);
        std::shuffle(numbers.begin(), numbers.end(), random);
        for (const int number : numbers)
            rows +=
                "INSERT INTO tagYC SELECT " +
                std::regex_replace(GetParam().id, std::regex("#"), std::to_string(number)) + "," +
                Any({"0", "1", "1", "2", "NULL"}) + "," + Any({"0", "1", "3", "5", "6", "NULL"}) +
                ",0,0,0,0,0,0,0,0,0,0,'ab',NULL,'1','2024-03-0" +
                Any({"4 00:00:01", "4 00:00:01", "4 01:00:02", "4 02:00:05", "5 00:00:09", "5 01:00:00"}) +
                "'," + std::to_string(number) + "," + std::to_string(number) + ",NULL,7;";
        RunSql(file, table + rows);
    }
    // All that the history can be asked, and what it leaves behind.
    std::string Answers() {
        std::string answers = Printed([this] {
            for (const int port : {0, 1, 2})
                for (const char* date : {"2024-03-04", "2024-03-05"})
                    for (const int hour : {0, 1, 2, 23, 24}) {
                        YcHistoryRecord records[24] = {};
                        int count = 24;
                        runtime.ReadDBSingleYCdata(date, port, hour, records, count);
                        std::printf("%d\n", count);
                    }
            runtime.Checkcache();
            YcHistoryRecord records[3] = {};
            int count = 3;
            runtime.ReadCacheYCdata(records, count);
            for (const int port : {0, 1, 2}) runtime.DeletCacheData("2024-03-04 00:", port);
        });
        for (const std::string& row : QueryRows(file, "SELECT * FROM tagYC NOT INDEXED"))
            answers += row + "\n";
        return answers + errors;
    }
    // What a start-up takes over, and what else it prints.
    std::string Start() {
        runtime.k1Cnt = runtime.k2Cnt = {};
        return Printed([this] { EXPECT_EQ(0, runtime.CheckYCDB()); });
    }

    std::mt19937 random{20240305};
};

TEST_P(CHistoryIndexes, ChangeNoAnswer) {
    const std::string kept = kScratchDirectory + std::string("kept");
    for (int round = 0; round < 10 && !HasFailure(); ++round) {
        MakeTable();
        fs::copy_file(file, kept, fs::copy_options::overwrite_existing);
        if (round % 2 == 0) RunSql(file, "CREATE INDEX tagYC_port_time ON tagYC(portNo,timestamp)");
        Start();
        const std::string restored = Start();
        EXPECT_EQ(GetParam().indexes, QueryNumber(file, kCountIndexes));
        const std::string answers = Answers();

        fs::copy_file(kept, file, fs::copy_options::overwrite_existing);
        {
            const CForeignLock reader(file, "BEGIN; SELECT * FROM tagYC");  // and so there is no index
            EXPECT_EQ(Start(), restored) << round;
        }
        EXPECT_EQ(0, QueryNumber(file, kCountIndexes));
        EXPECT_EQ(Answers(), answers) << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Of, CHistoryIndexes, testing::ValuesIn(kLayouts),
                         [](const auto& layout) { return layout.param.name; });

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
        fs::remove(file);
        if (c.empty)
            WriteText(file, "");
        else
            RunSql(file, std::string(kCreateYc) + "; INSERT INTO tagYC(portNo,timestamp) VALUES(1,'x')");
        FakeClock::Set(FakeClock::kStart);
        FailStats(file, c.failures);
        const std::string out = Printed([this] { StartUp(runtime); });
        FailStats("", 0);
        EXPECT_EQ(c.broken, out.find("is broken, so remove") != std::string::npos) << out;
        EXPECT_EQ(c.broken ? 0 : 1, QueryNumber(file, "SELECT count(*) FROM tagYC"));
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
        RunSql(file, std::string(kCreateYc) +
                         "; WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<" +
                         std::to_string(count - 1) + ") INSERT INTO tagYC(portNo,sendcount,timestamp," +
                         "chargeCnt,tradenumber) SELECT i%8+1," + std::to_string(sendCount) +
                         ",datetime('2014-01-01','+'||(i/8)||' hours'),i,hex(zeroblob(16)) FROM n");
    }
};
using HistoryOfYears = CHistoryOfYears;

TEST_F(HistoryOfYears, GetsItsIndexesInLittleMemory) {
    MakeRows(150000, 0);
    EXPECT_GT(7 << 20, Peak([this] { Printed([this] { runtime.CheckYCDB(); }); }));
    EXPECT_EQ(4, QueryNumber(file, kCountIndexes));
    EXPECT_EQ("", errors);
    EXPECT_EQ(1, std::distance(fs::directory_iterator(kAppDirectory), {}));  // no temporary file is left
}

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
