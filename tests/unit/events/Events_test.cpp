// The event database: what start-up makes of it, what an event leaves in it, and walks whose file is in the
// way of others.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <regex>

#include "System/AppFiles.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr char kLocked[] = "insert into zorsoe.db error!: database is locked\n";
constexpr char kReader[] = "BEGIN; SELECT * FROM sqlite_master";
constexpr char kNoRows[] = "DELETE FROM tagSOE WHERE id > 1; DELETE FROM tagErrMsg; ";

class CEvents : public CStationTest {
  protected:
    void MakeStore() {
        std::filesystem::remove(file);
        Printed([&] { EXPECT_EQ(0, runtime.InitSOE()); });
    }
    void Sql(const std::string& sql) { RunSql(file, sql); }
    std::string Rows(const std::string& sql = "SELECT id, event FROM tagSOE WHERE id > 1 ORDER BY id") {
        std::string all;
        for (const std::string& row : QueryRows(file, sql)) all += row + '\n';
        return all;
    }
    std::string Ids(const std::string& table = "tagSOE") {
        return Rows("SELECT group_concat(id) FROM (SELECT id FROM " + table + " ORDER BY id)");
    }
    void Load(const std::vector<std::string>& yx) {
        std::filesystem::remove(AppFile(kPointSettingFile));
        MakePoints({yx, {}});
        runtime.m_yxPoints.clear();
        Printed([&] { runtime.InitPointSettingYX(); });
    }
    // Points 101, 265 (which counts switching) and 297 (whose rise takes measurements) of a single port.
    void LoadThree() {
        runtime.m_portCount = 1;
        Load({"1,'A',5,101,'true',0,0", "2,'B',5,265,'true',0,0", "3,'C',5,297,'true',0,0"});
    }
    void SetThree(std::uint8_t state) {
        for (const int point : {101, 265, 297}) live.SetSignal(point, state);
    }
    // What a walk prints: the ids that it found, and all other lines.
    std::string Walk() {
        runtime.m_eventWait.Renew();
        return Printed([&] { runtime.DetectStatusChanges(); });
    }
    static std::string Found(std::initializer_list<int> ids) {
        std::string lines;
        for (const int id : ids) lines += "InsertSOE: the last record id is " + std::to_string(id) + "\\n\n";
        return lines;
    }
    std::unique_ptr<CForeignLock> Lock(const char* statements = CForeignLock::kWriter) {
        return std::make_unique<CForeignLock>(file, statements);
    }

    const std::string file = AppFile(kEventFile);
};
using Events = CEvents;

TEST_F(Events, WhatStartUpMakesOfAFile) {
    constexpr char kFresh[] = "1|SOE database init!|0|0|0|2024-03-05 09:45:00\n";
    constexpr char kNew[] = "InitSOE: Create Table tagSOE!";
    const struct {
        const char* name;
        const char* made;
        const char* says;
        const char* holds;
    } kCases[] = {
        {"nothing", "", kNew, kFresh},
        {"a table without rows", "CREATE TABLE tagSOE(id,a,b,c,d,e)", kNew, kFresh},
        {"a row", "CREATE TABLE tagSOE(id,a,b,c,d,e); INSERT INTO tagSOE VALUES(7,1,2,3,4,5)",
         "sqlite_master: nRow = 1 nColumn = 5", "7|1|2|3|4|5\n"},
        {"five columns", "CREATE TABLE tagSOE(id,a,b,c,d); INSERT INTO tagSOE(id) VALUES(1)",
         "Table tagSOE Exists, but not new!", kFresh},
        {"no id", "CREATE TABLE tagSOE(no,a,b,c,d,e); INSERT INTO tagSOE(no) VALUES(1)", kNew, kFresh},
        {"measurements", "CREATE TABLE tagErrMsg(id)", "Table tagErrMsg Exists!", kFresh},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove(file);
        Sql(c.made);
        EXPECT_THAT(Printed([&] { runtime.InitSOE(); }), testing::HasSubstr(c.says));
        EXPECT_EQ(c.holds, Rows("SELECT * FROM tagSOE"));
        EXPECT_EQ(1, QueryNumber(file, "SELECT count(*) FROM sqlite_master WHERE name = 'tagErrMsg'"));
    }
    WriteText(file, "no database at all, but long enough to be looked at twice");
    EXPECT_THAT(Printed([&] { runtime.InitSOE(); }), testing::HasSubstr("sqlite3_get_table Fail:"));
    // Being locked is not being old, also where the lock comes between two looks.
    std::filesystem::remove(file);
    Sql("CREATE TABLE tagSOE(id)");
    auto lock = Lock();
    Printed([&] { runtime.InitSOE(); });
    EXPECT_EQ(10000000, FakeClock::Slept());
    lock.reset();
    CSqlWatch watch;
    watch.Before("select", [&] { lock = Lock(); });
    Printed([&] { runtime.InitSOE(); });
    lock.reset();
    EXPECT_EQ("CREATE TABLE tagSOE(id)\n", Rows("SELECT sql FROM sqlite_master WHERE name = 'tagSOE'"));
}

// Ids up to 99999 keep everything; at 100000 the bound is -1; ids compare without a sign.
TEST_F(Events, Pruning) {
    const struct {
        const char* table;
        const char* before;
        const char* after;
        int vacuums;
    } kCases[] = {
        {"tagSOE", "(99999)", "99999,100000\n", 0},
        {"tagSOE", "(-1),(0),(100000)", "0,100000,100001\n", 1},
        {"tagSOE", "(1),(2),(100002)", "2,100002,100003\n", 1},
        {"tagSOE", "(-100006),(-100005),(-5)", "-100005,-5,-4\n", 1},
        {"tagErrMsg", "(1),(99999)", "1,99999,100000\n", 0},
        {"tagErrMsg", "(1),(2),(100002)", "2,100002,100003\n", 1},
    };
    MakeStore();
    CSqlWatch watch;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.before);
        Sql("DELETE FROM tagSOE; INSERT INTO tagSOE(id) VALUES(1); DELETE FROM " + std::string(c.table) +
            "; INSERT INTO " + c.table + "(id) VALUES" + c.before);
        watch.Take();
        Printed([&] { runtime.InsertSOE(1, 297, 0, "e"); });
        EXPECT_EQ(c.after, Ids(c.table));
        const auto statements = watch.Take();
        EXPECT_EQ(c.vacuums, std::count(statements.begin(), statements.end(), "VACUUM"));
    }
    // Once for all events of a walk, behind their commit, and each with its lines.
    LoadThree();
    SetThree(1);
    Sql("INSERT INTO tagSOE(id) VALUES(100002)");
    watch.Take();
    EXPECT_EQ(Found({100002, 100003}) +
                  "InsertSOE: delete sqlcommand is DELETE FROM tagErrMsg WHERE id<=2\\n\n" + Found({100004}),
              Walk());
    const auto statements = watch.Take();
    EXPECT_EQ("VACUUM", statements.back());
    EXPECT_EQ(1, std::count(statements.begin(), statements.end(), "VACUUM"));
    EXPECT_EQ("100002,100003,100004\n", Ids("tagErrMsg"));
}

TEST_F(Events, MeasurementsOfAPortsFault) {
    MakeStore();
    const struct {
        int point;
        std::uint32_t raw;
        float coefficient;
    } kValues[] = {{36, 100, 0.1F},       {101, 7505, 0.1F}, {102, 15, -0.1F}, {103, 0xFFFFFFFF, 1},
                   {110, 0xFFFFFFFF, -1}, {111, 99, 0.01F},  {113, 5, NAN},    {114, 16777217, 1},
                   {170, 3, 0.5F},        {171, 7, 3}};
    for (const auto& value : kValues) {
        live.SetYc(128 + value.point, value.raw);
        live.SetCoefficient(128 + value.point, value.coefficient);
    }
    Printed([&] { runtime.InsertSOE(1, 297, 0, "e"); });
    EXPECT_EQ(
        "Power_Limit:10 Output_V:750 Output_I:-1 Soc:2147483647 BMS_Need_V:-2147483648 BMS_Need_I:0 "
        "BMS_Real_V:0 "
        "BMS_Real_I:16777216 Meter_V:1 Meter_I:21|2024-03-05 09:45:00\n",
        Rows("SELECT event, timestamp FROM tagErrMsg"));
    // Value, point, table: none of the first port, of a neighbour, of a fall, another state, the second
    // table.
    const int kOthers[][3] = {{1, 169, 0}, {1, 41, 0}, {1, 296, 0}, {0, 297, 0}, {2, 297, 0}, {1, 297, 1}};
    for (const auto& other : kOthers) Printed([&] { runtime.InsertSOE(other[0], other[1], other[2], "e"); });
    EXPECT_EQ("1\n", Ids("tagErrMsg"));
    // Without an event to follow, the id of the measurements serves; without those either, nothing is stored.
    Sql("DELETE FROM tagSOE; DELETE FROM tagErrMsg; INSERT INTO tagErrMsg(id) VALUES(41)");
    Printed([&] { runtime.InsertSOE(1, 120, 0, "e"); });
    EXPECT_EQ("NULL\n", Ids());
    EXPECT_EQ("zor_runtime: zorsoe.db takes no events: no row to follow\n", errors);
    Printed([&] { runtime.InsertSOE(1, 297, 0, "e"); });
    EXPECT_EQ("42\n", Ids());
}

TEST_F(Events, SwitchingCounters) {
    const struct {
        int ports;
        int point;
        int table;
        int counter;  // -1: none
    } kCases[] = {{1, 137, 0, -1},  {1, 9, 0, -1},  {1, 264, 0, -1}, {1, 265, 0, 1},  {1, 1161, 0, 8},
                  {1, 1289, 0, -1}, {2, 265, 0, 2}, {2, 265, 1, -1}, {2, 1033, 0, 8}, {2, 1161, 0, -1}};
    MakeStore();
    for (const auto& c : kCases) {
        runtime.k1Cnt = runtime.k2Cnt = {};
        runtime.m_portCount = c.ports;
        Printed([&] { runtime.InsertSOE(0, c.point, c.table, "e"); });
        std::array<std::int32_t, kPortSlots> expected{};
        if (c.counter >= 0) expected[static_cast<std::size_t>(c.counter)] = 1;
        EXPECT_EQ(expected, runtime.k1Cnt) << c.point;
        EXPECT_EQ(expected, runtime.k2Cnt) << c.point;
    }
    runtime.k1Cnt = {};
    std::filesystem::remove_all(kAppDirectory);
    Printed([&] { runtime.InsertSOE(0, 265, 0, "e"); });
    EXPECT_EQ("Can't open database: unable to open database file\n", errors);
    EXPECT_EQ(0, runtime.k1Cnt[2]);
}

TEST_F(Events, LevelsAndTransitions) {
    MakeStore();
    runtime.m_portCount = 1;
    Load({"1,'W',4,7,'true',0,0", "1,'F',5,8,'true',0,0", "1,'E',6,7,'true',0,1", "1,'N',3,9,'true',0,0",
          "1,'?',7,10,'true',0,0"});
    const auto walk = [&](std::array<std::uint8_t, 5> states) {
        live.SetSignal(7, states[0]);
        live.SetSignal(8, states[1]);
        live.SetSignal2(7, states[2]);
        live.SetSignal(9, states[3]);
        live.SetSignal(10, states[4]);
        Sql(kNoRows);
        Walk();
        return Rows("SELECT event, value, point_no, yx_table FROM tagSOE WHERE id > 1 ORDER BY id");
    };
    EXPECT_EQ("", walk({}));
    EXPECT_EQ(
        "[Warning]W 0 -> 1|1|7|0\n[Fault]F 0 -> 1|2|8|0\n[Emergency]E 0 -> 1|1|7|1\n[Normal]N 0 -> 1|1|9|0\n"
        "[Normal]? 0 -> 1|255|10|0\n",
        walk({1, 2, 1, 1, 255}));
    EXPECT_EQ("", walk({1, 2, 1, 1, 255}));
    EXPECT_EQ("[Warning]W 1 -> 0|0|7|0\n[Emergency]E 0 -> 1|2|7|1\n", walk({0, 1, 2, 1, 254}));
    EXPECT_EQ("[Fault]F 1 -> 0|0|8|0\n", walk({0, 0, 1, 1, 254}));
    // The walk ends at a source that is unknown, and at an entry that is not there.
    for (const char* stop : {"50,'true',0,2", "50,'true',0,-1", "8192,'true',0,0", "-1,'true',0,1"}) {
        Load({"1,'A',5,101,'true',0,0", std::string("1,'S',5,") + stop, "1,'B',5,102,'true',0,0"});
        live.SetSignal(101, 1);
        live.SetSignal(102, 1);
        Sql(kNoRows);
        Walk();
        EXPECT_EQ("2|[Fault]A 0 -> 1\n", Rows()) << stop;
    }
}

// A statement that fails costs its own event; one that ends the transaction costs no other event, and nothing
// is printed or counted twice.
TEST_F(Events, FailingStatements) {
    const struct {
        const char* trigger;
        const char* prints;  // ids
        const char* error;
        const char* rows;
    } kCases[] = {
        {"INSERT ON tagSOE WHEN new.point_no=265 BEGIN SELECT RAISE(ABORT", "122", "insert into zorsoe.db",
         "A C"},
        {"INSERT ON tagSOE WHEN new.point_no=265 BEGIN SELECT RAISE(ROLLBACK", "122", "insert into zorsoe.db",
         "A C"},
        {"INSERT ON tagErrMsg BEGIN SELECT RAISE(ROLLBACK", "123", "insert into zorsoe.db", "A B C"},
        {"DELETE ON tagErrMsg BEGIN SELECT RAISE(ROLLBACK", "12d3", "delete ErrMsg from zorsoe.db", "A B C"},
    };
    MakeStore();
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.trigger);
        Sql(std::string(kNoRows) + "INSERT INTO tagErrMsg(id) VALUES(1),(100002)");
        Sql("CREATE TRIGGER t BEFORE " + std::string(c.trigger) + ", 'no room'); END");
        LoadThree();
        SetThree(1);
        runtime.k1Cnt = {};
        std::string prints;
        for (const char* at = c.prints; *at != '\0'; ++at) prints += *at != 'd' ? Found({*at - '0'}) : "";
        const std::string printed = Walk();
        EXPECT_EQ(prints, std::regex_replace(printed, std::regex("[^\n]*delete sqlcommand[^\n]*\n"), ""));
        EXPECT_EQ(std::string(c.error) + " error!: no room\n", errors);
        std::string rows;
        for (const std::string& row :
             QueryRows(file, "SELECT substr(event, 8, 1) FROM tagSOE WHERE id > 1 ORDER BY id"))
            rows += (rows.empty() ? "" : " ") + row;
        EXPECT_EQ(c.rows, rows);
        EXPECT_EQ(1, runtime.k1Cnt[1]);
        Sql("DROP TRIGGER t");
    }
    // A text that would end its quotes, and one that does not fit.
    Sql(kNoRows);
    for (const std::string& text : {std::string("x','0'); DROP TABLE tagSOE; --"), std::string(3000, 'x')})
        Printed([&] { runtime.InsertSOE(1, 120, 0, text); });
    EXPECT_EQ("insert into zorsoe.db error!: the statement is too long\n", errors);
    EXPECT_EQ("", Rows());
    // Without its table no event can be stored, which the hour's first one says.
    Sql("DROP TABLE tagSOE");
    SetThree(0);
    Walk();
    EXPECT_EQ("zor_runtime: zorsoe.db takes no events: no such table: tagSOE\n", errors);
    SetThree(1);
    Walk();
    EXPECT_EQ("", errors);
}

// All events of a walk are one transaction. A lock that is gone in time costs nothing.
TEST_F(Events, OneTransactionPerWalk) {
    MakeStore();
    LoadThree();
    CSqlWatch watch;
    std::uint8_t state = 1;
    for (const char* lock : {"", kReader, CForeignLock::kWriter}) {
        SCOPED_TRACE(lock);
        Sql(kNoRows);
        std::unique_ptr<CForeignLock> locked;
        if (*lock != '\0') locked = Lock(lock);
        FakeClock::Set(FakeClock::kStart);
        FakeClock::After(500000, [&] { locked.reset(); });
        SetThree(state);
        watch.Take();
        EXPECT_EQ(Found({1, 2, 3}), Walk());
        EXPECT_EQ("", errors);
        const auto statements = watch.Take();
        EXPECT_EQ(state == 1 ? 8U : 6U, statements.size());
        EXPECT_EQ("begin immediate transaction", statements.front());
        EXPECT_EQ("commit transaction", statements.back());
        state = 1 - state;
    }
}

// A file that stays locked: the texts come once for each event, everything is stored when it is free.
TEST_F(Events, EventsOfALockedFileAreKept) {
    const struct {
        const char* lock;
        std::string prints;  // of one event
        std::string error;
    } kCases[] = {
        {CForeignLock::kWriter, "InsertSOE: read record from zorsoe.db error!: database is locked\\n\n", ""},
        {"BEGIN IMMEDIATE", Found({1}), kLocked},
        {kReader, Found({1}), kLocked},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.lock);
        MakeStore();
        runtime.m_portCount = 1;
        Load({"1,'A',5,101,'true',0,0", "2,'B',5,265,'true',0,0"});
        for (const int point : {101, 265}) live.SetSignal(point, 0);
        runtime.k1Cnt = {};
        auto lock = Lock(c.lock);
        FakeClock::Set(FakeClock::kStart);
        const auto change = [&](int point, std::uint8_t state) {
            live.SetSignal(point, state);
            return Walk();
        };
        EXPECT_EQ(c.prints, change(265, 1));
        EXPECT_EQ(c.error, errors);
        EXPECT_EQ(1000000, FakeClock::Slept());
        // From now on nothing waits, so that no change is missed.
        EXPECT_EQ(c.prints, change(265, 0));
        EXPECT_EQ("", Walk());
        EXPECT_EQ(c.prints, change(101, 1));
        EXPECT_EQ(1000000, FakeClock::Slept());
        lock.reset();
        EXPECT_EQ("", Rows());
        usleep(3000000);
        EXPECT_EQ(Found({1, 2, 3}), Walk());
        EXPECT_EQ("", Walk());
        EXPECT_EQ(2, runtime.k1Cnt[1]);
        EXPECT_EQ(
            "2|[Fault]B 0 -> 1|2024-03-05 09:45:00\n3|[Fault]B 1 -> 0|2024-03-05 09:45:01\n"
            "4|[Fault]A 0 -> 1|2024-03-05 09:45:01\n",
            Rows("SELECT id, event, timestamp FROM tagSOE WHERE id > 1"));
    }
}

// However many there are when somebody reads on.
TEST_F(Events, LongWalkWhoseCommitFails) {
    MakeStore();
    Load(YxRows(40));
    for (int point = 0; point < 40; ++point) live.SetSignal(point, 1);
    auto lock = Lock(kReader);
    Walk();
    lock.reset();
    Walk();
    EXPECT_EQ(41, QueryNumber(file, "SELECT count(*) FROM tagSOE"));
}

TEST_F(Events, MeasurementsWaitWithTheirEvent) {
    MakeStore();
    LoadThree();
    live.SetYc(128 + 36, 5);
    live.SetCoefficient(128 + 36, 1);
    auto lock = Lock();
    SetThree(1);
    Walk();
    live.SetYc(128 + 36, 6);  // what is measured later is another matter
    usleep(2000000);
    lock.reset();
    Walk();
    EXPECT_EQ("Power_Limit:5|2024-03-05 09:45:00\n",
              Rows("SELECT substr(event, 1, 13), timestamp FROM tagErrMsg"));
}

// Each event of a file that is gone says so; those that had waited go with the first.
TEST_F(Events, AFileThatIsGone) {
    MakeStore();
    LoadThree();
    auto lock = Lock();
    SetThree(1);
    Walk();
    lock.reset();
    std::filesystem::remove_all(kAppDirectory);
    const std::string gone = "Can't open database: unable to open database file\n";
    Walk();
    EXPECT_EQ(gone, errors);
    SetThree(0);
    Walk();
    EXPECT_EQ(gone + gone + gone, errors);
    Walk();
    EXPECT_EQ("", errors);
    EXPECT_EQ(1, runtime.k1Cnt[1]);
}

TEST_F(Events, NoMoreThanTenThousandWait) {
    constexpr int kMost = 10000;
    MakeStore();
    runtime.m_portCount = 1;
    Load(YxRows(500));
    auto lock = Lock();
    int said = 0;
    for (int i = 0; i < kMost / 500 + 1; ++i) {
        for (int point = 0; point < 500; ++point) live.SetSignal(point, i % 2 == 0);
        Walk();
        if (errors.find("zorsoe.db is locked for too long: events are lost\n") != std::string::npos) ++said;
    }
    EXPECT_EQ(1, said);
    lock.reset();
    Walk();
    EXPECT_EQ("2|[Fault]Point 0 1 -> 0\n", Rows("SELECT id, event FROM tagSOE WHERE id = 2"));
    EXPECT_EQ(kMost + 1, QueryNumber(file, "SELECT max(id) FROM tagSOE"));
}

// Giving up the lock fails when everything stands on the disk already.
TEST_F(Events, ACommitThatFailsAfterTheFact) {
    MakeStore();
    LoadThree();
    SetThree(1);
    CSqlWatch watch;
    watch.Before("commit", [] { FailNextUnlock(); });
    EXPECT_EQ(Found({1, 2, 3}), Walk());
    EXPECT_EQ("1,2,3,4\n", Ids());
    EXPECT_EQ("1\n", Ids("tagErrMsg"));
}

}  // namespace
