// The history at start-up: files that give way or stay, their counters, indexes that change only the speed.
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "app/StartUp.h"
#include "history/HistoryDatabase.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

struct History : CHistoryTest {
    // What the check at start-up prints. It keeps the file.
    std::string Check() {
        return Printed([&] { EXPECT_EQ(0, runtime.CheckYCDB()); });
    }
    const std::string file = AppFile(kHistoryFile);
};

// What is there, what is said of it, and whether it gives way to a new file.
TEST_F(History, FilesAtStartUp) {
    MakeConfig(1);
    for (const auto& row : Table(R"(
nothing                  | zorycdata.db is not exist!!!                   | new
empty                    | zorycdata.db is broken, so remove zorycdata.db | new
text                     | sqlite3_get_table Fail:                        | new
tagYC(portNo, chargeCnt) | tagYC is old, so remove it!                    | new
tagYC(portNo, chargeCnt); INSERT INTO tagYC VALUES(1, 2) --cut | tagYC is old, so remove it! | new
tagYC(portNo, chargecnt); INSERT INTO tagYC VALUES(1, 2)       | tagYC is old, so remove it! | new
tagYC(a, chargeCnt); INSERT INTO tagYC VALUES(1, 2)            | tagYC is new, so keep it!   | kept)")) {
        fs::remove(file);
        if (row[0].find('(') != std::string::npos) Sql("CREATE TABLE " + row[0]);
        if (row[0].find("--cut") != std::string::npos)
            std::fstream(file).seekp(4096) << std::string(4096, 'x');
        if (row[0] == "empty" || row[0] == "text")
            WriteText(file, std::string(row[0] == "text" ? 4096 : 0, 'x'));
        EXPECT_THAT(Printed([this] { StartUp(runtime); }), HasSubstr(row[1]));
        EXPECT_EQ(row[2] == "new", Rows("SELECT sql FROM sqlite_master")[0] == kCreateYc) << row[0];
    }
    EXPECT_EQ("zor_runtime: zorycdata.db stays slow without its indexes: no such column: portNo\n", errors);
}

// Busy is not old, nor is what cannot be read or looked at for less than a second; a file that is lost is.
TEST_F(History, FilesThatCannotBeReadJustNow) {
    Sql("INSERT INTO tagYC(portNo) VALUES(1)");
    auto lock = Lock(kHistoryFile);
    Check();
    EXPECT_EQ(10000000, FakeClock::Slept());
    lock.reset();
    for (const int failures : {1, 2}) {
        FailStats(file, failures);
        EXPECT_EQ(failures == 2, IsHistoryBroken(file.c_str()));
    }
    EXPECT_EQ(12000000, FakeClock::Slept());
    FailReads(1000);
    FakeClock::After(900000, [] { FailReads(0); });
    Check();
    EXPECT_THAT(Rows("SELECT portNo FROM tagYC"), ElementsAre("1"));
    FailReads(1000);
    Printed([this] { EXPECT_EQ(1, runtime.CheckYCDB()); });
    FailReads(0);
    EXPECT_EQ("zor_runtime: zorycdata.db cannot be read: disk I/O error\n", errors);
    EXPECT_FALSE(fs::exists(file));
}

// They come from charge count and charge time of a port's newest row.
TEST_F(History, Counters) {
    Sql("INSERT INTO tagYC(id,portNo,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) VALUES (5,0,1000,2000,55,66),"
        "(6,1,100,200,55,66),(3,1,7,7,55,66),(1,2,NULL,2147483647,55,66)");
    runtime.k1Cnt = {10, 11, 12, 13};
    runtime.k2Cnt = {20, 21, 22, 23};
    runtime.m_portCount = 1;
    EXPECT_THAT(Check(), HasSubstr("CheckYCDB: port:0 get k1Cnt:1010 k2Cnt:2020 from tagYC!⏎\n"));
    runtime.m_portCount = 3;
    EXPECT_THAT(Check(), HasSubstr("CheckYCDB: tagYC get port: 3 no data!⏎\n"));
    EXPECT_THAT(runtime.k1Cnt, ElementsAre(1010, 111, 12, 13, 0, 0, 0, 0, 0));
    EXPECT_THAT(runtime.k2Cnt, ElementsAre(2020, 221, -2147483627, 23, 0, 0, 0, 0, 0));
}

constexpr char kOurId[] = "id INTEGER PRIMARY KEY";
constexpr char kCountIndexes[] = "SELECT count(*) FROM sqlite_master WHERE type='index' AND sql NOT NULL";

struct HistoryIndexes : History {
    // Rows of few ports and times, 60 for every day, told apart by their charge counts. The first columns of
    // row n are `value`.
    static void MakeTable(const std::string& columns, const std::string& value, int rows) {
        Sql("DROP TABLE tagYC; " + std::regex_replace(kCreateYc, std::regex(kOurId), columns) +
            "; WITH RECURSIVE r(n,x) AS (SELECT 1,7 UNION ALL SELECT n+1,(x*75+74)%65537 FROM r LIMIT " +
            std::to_string(rows) + ") INSERT INTO tagYC SELECT " + value +
            ",NULLIF(x%4,3),x/4%7,0,0,0,0,0,0,0,0,0,0,0,0,0,date('2024-03-04','+'||(n/60)||' days')||"
            "' 0'||(x/56%3)||':00:0'||(x/168%3),n,n,0,0 FROM r");
    }
    // All that the history can be asked.
    std::string Answers() {
        return Printed([this] {
            YcHistoryRecord records[24] = {};
            int count = 3;
            for (const int port : {0, 1, 2})
                for (const int hour : {0, 1, 23, 24})
                    runtime.ReadDBSingleYCdata("2024-03-04", port, hour, records, count = 24);
            runtime.Checkcache();
            runtime.ReadCacheYCdata(records, count = 3);
            runtime.DeletCacheData("2024-03-04 00:", 1);
        });
    }
};

// Neither to our own table nor to such as another program could have made.
TEST_F(HistoryIndexes, ChangeNoAnswer) {
    for (const auto& row : Table(std::string(kOurId) + R"(      | n               | 4
id INT PRIMARY KEY          | n               | 1
id INTEGER UNIQUE           | NULLIF(n%3,n%3) | 1
x INTEGER PRIMARY KEY, id   | n,n%4           | 1
x TEXT                      | 'x'             | 1)")) {
        std::vector<std::string> answers[2];
        for (const bool indexed : {false, true}) {
            MakeTable(row[0], row[1], 59);
            // While somebody reads, no index is made.
            auto reader = indexed ? nullptr : Lock(kHistoryFile, "BEGIN; SELECT * FROM tagYC");
            runtime.k1Cnt = runtime.k2Cnt = {};
            const std::string restored = Check();
            EXPECT_EQ(indexed ? row[2] : "0", Rows(kCountIndexes)[0]) << row[0];
            reader.reset();
            const std::string said = Answers();
            answers[indexed] = Rows("SELECT * FROM tagYC NOT INDEXED");
            answers[indexed].push_back(restored + said);
        }
        EXPECT_EQ(answers[0], answers[1]) << row[0];
    }
}

// The table grows for years: making them takes little memory, then nothing reads or sorts all of it.
TEST_F(HistoryIndexes, ServeEveryQuery) {
    MakeTable(kOurId, "n", 150000);
    const sqlite3_int64 before = sqlite3_memory_used();
    sqlite3_memory_highwater(1);
    Check();
    CSqlWatch watch;
    Check();
    Answers();
    EXPECT_GT(7 << 20, sqlite3_memory_highwater(0) - before);
    EXPECT_EQ(1, std::distance(fs::directory_iterator(kAppDirectory), {}));  // no temporary file is left
    const std::regex kReadsAll("SCAN TABLE tagYC(?! USING INDEX tagYC_pending)|TEMP B-TREE");
    int judged = 0;
    for (const std::string& sql : watch.Take()) {
        if (sql.find("portNo=") == std::string::npos && sql.find("sendcount") == std::string::npos) continue;
        // The index of the pending rows holds no others.
        for (const std::string& row : Rows("EXPLAIN QUERY PLAN " + sql))
            EXPECT_FALSE(std::regex_search(row, kReadsAll)) << sql << row;
        ++judged;
    }
    EXPECT_LE(20, judged);
}

}  // namespace
