// The event database: what start-up makes of it, what an event leaves in it, and walks while it is locked.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <tuple>

#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::HasSubstr;

constexpr char kNoRows[] = "DELETE FROM tagSOE WHERE id > 1; DELETE FROM tagErrMsg; ";
// The first counts switching, a rise of the last takes measurements.
const PointRows kThree = {{"2,'B',5,265,'true',0,0", "1,'A',5,101,'true',0,0", "3,'C',5,297,'true',0,0"}, {}};

// A station with a single port.
struct Events : CStationTest {
    Events() {
        runtime.m_portCount = 1;
        Printed([this] { runtime.InitSOE(); });
    }
    static void Sql(const std::string& sql) { RunSql(AppFile(kEventFile), sql); }
    // The rows of a query, joined by commas; without one the events but that of the start.
    static std::string Rows(const std::string& sql = "SELECT substr(event,8) FROM tagSOE WHERE id>1") {
        std::string all;
        for (const std::string& row : QueryRows(AppFile(kEventFile), sql))
            all += (all.empty() ? "" : ",") + row;
        return all;
    }
    static std::string Ids(const std::string& table) {
        return Rows("SELECT id FROM " + table + " ORDER BY id");
    }
    // What a walk prints that finds these ids of one digit.
    static std::string Found(const std::string& ids) {
        std::string lines;
        for (const char id : ids) lines += std::string("InsertSOE: the last record id is ") + id + "⏎\n";
        return lines;
    }
    void Insert(int value, int point, int table = 0, const std::string& text = "e") {
        Printed([&] { runtime.InsertSOE(value, point, table, text); });
    }
    void SetThree(std::uint8_t state) {
        for (const int point : {101, 265, 297}) live.SetSignal(point, state);
    }
};

TEST_F(Events, WhatStartUpMakesOfAFile) {
    EXPECT_EQ("1|SOE database init!|0|0|0|2024-03-05 09:45:00", Rows("SELECT * FROM tagSOE"));
    for (const auto& row : Table(R"(
tagSOE(id,a,b,c,d,e)                                   | InitSOE: Create Table tagSOE!     | 1
tagSOE(id,a,b,c,d,e); INSERT INTO tagSOE(id) VALUES(7) | nRow = 1                          | 7
tagSOE(id,a,b,c,d); INSERT INTO tagSOE(id) VALUES(7)   | Table tagSOE Exists, but not new! | 1
tagSOE(no,a,b,c,d,e); INSERT INTO tagSOE(no) VALUES(7) | Table tagSOE Exists, but not new! | 1
tagErrMsg(id)                                          | Table tagErrMsg Exists!           | 1)")) {
        std::filesystem::remove(AppFile(kEventFile));
        Sql("CREATE TABLE " + row[0]);
        EXPECT_THAT(Printed([this] { runtime.InitSOE(); }), HasSubstr(row[1]));
        EXPECT_EQ(row[2], Ids("tagSOE")) << row[0];
        EXPECT_EQ("", Ids("tagErrMsg"));
    }
    // Being locked is not being old, also where the lock comes between two looks.
    Sql("DROP TABLE tagSOE; CREATE TABLE tagSOE(id)");
    CSqlWatch watch;
    std::unique_ptr<CForeignLock> lock;
    watch.Before("select", [&] { lock = Lock(kEventFile); });
    Printed([this] { runtime.InitSOE(); });
    EXPECT_EQ(10000000, FakeClock::Slept());
    lock.reset();
    EXPECT_EQ("CREATE TABLE tagSOE(id)", Rows("SELECT sql FROM sqlite_master WHERE name='tagSOE'"));
}

// Table, ids before an event, ids after it, whether room is given back. Ids up to 99999 keep everything; at
// 100000 the bound is -1; ids compare without a sign.
TEST_F(Events, Pruning) {
    CSqlWatch watch;
    const auto vacuums = [&watch] {
        const auto statements = watch.Take();
        return std::to_string(std::count(statements.begin(), statements.end(), "VACUUM"));
    };
    for (const auto& row : Table(R"(
tagSOE    | (99999)                   | 99999,100000         | 0
tagSOE    | (-1),(0),(100000)         | 0,100000,100001      | 1
tagSOE    | (-100006),(-100005),(-5)  | -100005,-5,-4        | 1
tagErrMsg | (1),(2),(100002)          | 2,100002,100003      | 1)")) {
        Sql("DELETE FROM tagSOE; INSERT INTO tagSOE(id) VALUES(1); DELETE FROM " + row[0] + "; INSERT INTO " +
            row[0] + "(id) VALUES" + row[1]);
        Insert(1, 297);
        EXPECT_EQ(row[2], Ids(row[0]));
        EXPECT_EQ(row[3], vacuums());
    }
    // Once for all events of a walk.
    Load(kThree);
    SetThree(1);
    Sql("INSERT INTO tagSOE(id) VALUES(100003)");
    Walk();
    EXPECT_EQ("100003,100004,100005,100006", Ids("tagSOE"));
    EXPECT_EQ("1", vacuums());
}

TEST_F(Events, MeasurementsOfAPortsFault) {
    const std::tuple<int, std::uint32_t, float> kValues[] = {
        {36, 100, 0.1F},  {101, 7505, 0.1F}, {102, 15, -0.1F},   {103, 0xFFFFFFFF, 1}, {110, 0xFFFFFFFF, -1},
        {111, 99, 0.01F}, {113, 5, NAN},     {114, 16777217, 1}, {170, 3, 0.5F},       {171, 7, 3}};
    for (const auto& [point, raw, coefficient] : kValues) {
        live.SetYc(128 + point, raw);
        live.SetCoefficient(128 + point, coefficient);
    }
    Insert(1, 297);
    EXPECT_EQ(
        "Power_Limit:10 Output_V:750 Output_I:-1 Soc:2147483647 BMS_Need_V:-2147483648 BMS_Need_I:0 "
        "BMS_Real_V:0 BMS_Real_I:16777216 Meter_V:1 Meter_I:21|2024-03-05 09:45:00",
        Rows("SELECT event, timestamp FROM tagErrMsg"));
    // None of the first port, of a neighbour, of a fall, another state, the second table.
    const int kOthers[][3] = {{1, 169, 0}, {1, 296, 0}, {0, 297, 0}, {2, 297, 0}, {1, 297, 1}};
    for (const auto& [value, point, table] : kOthers) Insert(value, point, table);
    EXPECT_EQ("1", Ids("tagErrMsg"));
    // Without an event to follow, the id of the measurements serves; without those either, nothing is stored.
    Sql("DELETE FROM tagSOE");
    Insert(1, 120);
    EXPECT_EQ("zor_runtime: zorsoe.db takes no events: no row to follow\n", errors);
    Insert(1, 297);
    EXPECT_EQ("2", Ids("tagSOE"));
}

// Ports, point, table, counter (-1: none).
TEST_F(Events, SwitchingCounters) {
    const int kCases[][4] = {{1, 137, 0, -1},  {1, 264, 0, -1}, {1, 265, 0, 1},  {1, 1161, 0, 8},
                             {1, 1289, 0, -1}, {2, 265, 0, 2},  {2, 265, 1, -1}, {2, 1161, 0, -1}};
    for (const auto& [ports, point, table, counter] : kCases) {
        runtime.k1Cnt = runtime.k2Cnt = {};
        runtime.m_portCount = ports;
        Insert(0, point, table);
        std::array<std::int32_t, kPortSlots> expected{};
        if (counter >= 0) expected[static_cast<std::size_t>(counter)] = 1;
        EXPECT_EQ(expected, runtime.k1Cnt) << point;
        EXPECT_EQ(expected, runtime.k2Cnt) << point;
    }
}

TEST_F(Events, LevelsAndTransitions) {
    Load({{"1,'W',4,7,'true',0,0", "1,'F',5,8,'true',0,0", "1,'N',3,9,'true',0,0", "1,'?',7,10,'true',0,0",
           "1,'E',6,7,'true',0,1"},
          {}});
    const auto walk = [&](std::array<std::uint8_t, 5> states) {
        for (std::size_t i = 0; i < 4; ++i) live.SetSignal(static_cast<int>(7 + i), states[i]);
        live.SetSignal2(7, states[4]);
        Sql(kNoRows);
        Walk();
        return Rows("SELECT event, value, point_no, yx_table FROM tagSOE WHERE id>1");
    };
    EXPECT_EQ("", walk({}));
    EXPECT_EQ(
        "[Warning]W 0 -> 1|1|7|0,[Fault]F 0 -> 1|2|8|0,[Normal]N 0 -> 1|1|9|0,[Normal]? 0 -> 1|255|10|0,"
        "[Emergency]E 0 -> 1|1|7|1",
        walk({1, 2, 1, 255, 1}));
    EXPECT_EQ("[Warning]W 1 -> 0|0|7|0,[Emergency]E 0 -> 1|2|7|1", walk({0, 1, 1, 254, 2}));
    // The walk ends at a source that is unknown, and at an entry that is not there.
    for (const char* stop : {"50,'true',0,2", "8192,'true',0,0", "-1,'true',0,1"}) {
        Load({{"1,'A',5,101,'true',0,0", std::string("1,'S',5,") + stop, "1,'B',5,265,'true',0,0"}, {}});
        SetThree(1);
        Sql(kNoRows);
        Walk();
        EXPECT_EQ("A 0 -> 1", Rows()) << stop;
    }
}

// A statement that fails costs its own event; one that ends the transaction costs no other event, and nothing
// is printed or counted twice.
TEST_F(Events, FailingStatements) {
    for (const std::string way : {"ABORT", "ROLLBACK"}) {
        Sql(kNoRows + ("CREATE TRIGGER t BEFORE INSERT ON tagSOE WHEN new.point_no=101 BEGIN SELECT RAISE(" +
                       way + ", 'no room'); END"));
        Load(kThree);
        SetThree(1);
        runtime.k1Cnt = {};
        EXPECT_EQ(Found("122"), Walk()) << way;
        EXPECT_EQ("insert into zorsoe.db error!: no room\n", errors);
        EXPECT_EQ("B 0 -> 1,C 0 -> 1", Rows());
        EXPECT_EQ(1, runtime.k1Cnt[1]);
        Sql("DROP TRIGGER t");
    }
    Insert(1, 120, 0, std::string(3000, 'x'));
    EXPECT_EQ("insert into zorsoe.db error!: the statement is too long\n", errors);
}

// A file that stays locked: the texts come once for each event, everything is stored when it is free, with
// the time and the measurements of its change.
TEST_F(Events, EventsOfALockedFileAreKept) {
    const std::pair<int, std::uint8_t> kChanges[] = {{265, 1}, {265, 0}, {297, 1}};
    live.SetCoefficient(128 + 36, 1);
    live.SetYc(128 + 36, 5);
    Load(kThree);
    auto lock = Lock(kEventFile, "BEGIN IMMEDIATE");
    for (const auto& [point, state] : kChanges) {
        live.SetSignal(point, state);
        EXPECT_EQ(Found("1"), Walk());
        EXPECT_THAT(errors, HasSubstr("insert into zorsoe.db error!: database is locked\n"));
        EXPECT_EQ("", Walk());
        EXPECT_EQ(1000000, FakeClock::Slept());  // by the first, so that no later change is missed
    }
    live.SetYc(128 + 36, 6);
    usleep(3000000);
    lock.reset();
    EXPECT_EQ(Found("123"), Walk());
    EXPECT_EQ(2, runtime.k1Cnt[1]);
    EXPECT_EQ("B 0 -> 1|45:00,B 1 -> 0|45:01,C 0 -> 1|45:01",
              Rows("SELECT substr(event,8), substr(timestamp,15) FROM tagSOE WHERE id>1"));
    EXPECT_EQ("Power_Limit:5|45:01", Rows("SELECT substr(event,1,13), substr(timestamp,15) FROM tagErrMsg"));
}

// The reader of the file lets everything be written, but not committed.
TEST_F(Events, NoMoreThanTenThousandWait) {
    constexpr int kMost = 10000;
    Load({YxRows(500), {}});
    auto lock = Lock(kEventFile, "BEGIN; SELECT * FROM tagSOE");
    for (int i = 0; i <= kMost / 500; ++i) {
        for (int point = 0; point < 500; ++point) live.SetSignal(point, i % 2 == 0);
        Walk();
    }
    EXPECT_THAT(errors, HasSubstr("zor_runtime: zorsoe.db is locked for too long: events are lost\n"));
    lock.reset();
    Walk();
    EXPECT_EQ("2|[Fault]Point 0 1 -> 0", Rows("SELECT id, event FROM tagSOE WHERE id = 2"));
    EXPECT_EQ(std::to_string(kMost + 1), Rows("SELECT max(id) FROM tagSOE"));
}

// However long it is; giving up the lock may fail when everything stands on the disk already.
TEST_F(Events, AWalkIsOneTransaction) {
    const auto isEvent = [](const std::string& sql) { return sql.find("INSERT INTO tagSOE") == 0; };
    PointRows burst{YxRows(60, 265), {}};
    std::reverse(burst.yx.begin(), burst.yx.end());
    Load(burst);
    CSqlWatch watch;
    for (const bool rising : {true, false}) {
        if (!rising) watch.Before("commit", [] { FailNextUnlock(); });
        for (int point = 265; point < 325; ++point) live.SetSignal(point, rising);
        Sql(kNoRows);
        watch.Take();
        Walk();
        const auto ran = watch.Take();
        EXPECT_EQ(1, std::count(ran.begin(), ran.end(), "begin immediate transaction"));
        const auto commit = std::find(ran.begin(), ran.end(), "commit transaction");
        EXPECT_EQ(1, std::count(commit, ran.end(), "commit transaction"));
        EXPECT_EQ(60, std::count_if(ran.begin(), commit, isEvent));
        EXPECT_EQ("60", Rows("SELECT count(*) FROM tagSOE WHERE id = 326 - point_no"));
        EXPECT_EQ(rising ? "1" : "0", Rows("SELECT count(*) FROM tagErrMsg"));
    }
}

}  // namespace
