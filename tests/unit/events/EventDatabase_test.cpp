// The event database: what start-up makes of a file, and what one event does to it.
#include <filesystem>

#include "tests/unit/events/EventTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kOpened =
    Line("InitSOE", "You have opened a sqlite3 database named zorsoe.db successfully!");
const std::string kErrMsgExists = Line("InitSOE", "Table tagErrMsg Exists!");
const std::string kErrMsgMissing = Line("InitSOE", "Table tagErrMsg Not Exists!");
const std::string kUnread = Line("InitSOE", "sqlite3_get_table Fail:\n");
const std::string kOld = Line("InitSOE", "Table tagSOE Exists, but not new!");
const std::string kMade = Line("InitSOE", "Create Table tagSOE!");
const std::string kCreateErrMsgSql =
    "CREATE TABLE tagErrMsg(id INTEGER PRIMARY KEY,event TEXT(256),timestamp TEXT(25))";
const std::string kCreateSoeSql =
    "CREATE TABLE tagSOE(id INTEGER PRIMARY KEY, event TEXT(60), value INTEGER, point_no INTEGER, "
    "yx_table INTEGER, timestamp TEXT(25))";
const std::string kFirstRow = "1|SOE database init!|0|0|0|2024-03-05 09:45:00";

std::string Master(int rows, int columns) {
    return "sqlite_master: nRow = " + std::to_string(rows) + " nColumn = " + std::to_string(columns) + "\n";
}

class CEventSetUp : public CEventTest {
  protected:
    // Start-up's lines, with the number that the master line carries cut out.
    std::string InitLines() {
        const std::string out = Init().out;
        const std::size_t from = out.find("Line: ");
        if (from == std::string::npos) return out;
        return out.substr(0, from) + out.substr(out.find("sqlite_master", from));
    }
};
using EventSetUp = CEventSetUp;

TEST_F(EventSetUp, WhatStartUpMakesOfAFile) {
    const std::string row = "INSERT INTO tagSOE VALUES (7,'e',1,2,0,'t'";
    struct Case {
        std::string before;
        std::string out;
        std::vector<std::string> rows;
    };
    const auto master = [](int rows, int columns) { return Line("InitSOE", Master(rows, columns)); };
    const Case cases[] = {
        {"", kOpened + kErrMsgMissing + master(0, 0) + kMade, {kFirstRow}},
        {kCreateErrMsgSql, kOpened + kErrMsgExists + master(0, 0) + kMade, {kFirstRow}},
        {kCreateErrMsgSql + ";" + kCreateSoeSql + ";" + row + ")",
         kOpened + kErrMsgExists + master(1, 5),
         {"7|e|1|2|0|t"}},
        {kCreateSoeSql, kOpened + kErrMsgMissing + master(1, 5) + kOld + kMade, {kFirstRow}},
        {"CREATE TABLE tagSOE(id,a,b,c,d); INSERT INTO tagSOE VALUES (1,2,3,4,5)",
         kOpened + kErrMsgMissing + master(1, 5) + kOld + kMade,
         {kFirstRow}},
        {"CREATE TABLE tagSOE(no,a,b,c,d,e); INSERT INTO tagSOE VALUES (1,2,3,4,5,6)",
         kOpened + kErrMsgMissing + master(1, 5) + kOld + kMade,
         {kFirstRow}},
        {"CREATE TABLE tagSOE(id,a,b,c,d,e,f);" + row + ",'f')",
         kOpened + kErrMsgMissing + master(1, 5),
         {"7|e|1|2|0|t|f"}},
    };
    for (const Case& c : cases) {
        std::filesystem::remove(path);
        RunSql(path, c.before);
        EXPECT_EQ(c.out, InitLines()) << c.before;
        EXPECT_EQ(c.rows, Soe()) << c.before;
        EXPECT_THAT(QueryRows(path, "SELECT sql FROM sqlite_master WHERE name='tagErrMsg'"),
                    ElementsAre(kCreateErrMsgSql));
        if (c.rows.front() != kFirstRow) continue;
        EXPECT_THAT(QueryRows(path, "SELECT sql FROM sqlite_master WHERE name='tagSOE'"),
                    ElementsAre(kCreateSoeSql));
    }
}

TEST_F(EventSetUp, NoDatabase) {
    WriteText(path, "no database at all, but long enough to be looked at twice");
    EXPECT_EQ(kOpened + kUnread + kUnread, InitLines());
    std::filesystem::remove_all(kAppDirectory);
    EXPECT_EXIT(runtime.InitSOE(), testing::ExitedWithCode(0),
                "^Can't open database: unable to open database file\n$");
}

TEST_F(EventSetUp, LockedKeepsItsRows) {
    RunSql(path, kCreateSoeSql);  // empty, so that start-up would drop it
    {
        const CForeignLock lock(path, CForeignLock::kWriter);
        EXPECT_EQ(kOpened + kUnread + kUnread, InitLines());
        EXPECT_EQ(10000000, FakeClock::Slept());  // one wait for all
    }
    std::unique_ptr<CForeignLock> lock;
    watch.Before("select * from tagSOE",
                 [&] { lock = std::make_unique<CForeignLock>(path, CForeignLock::kWriter); });
    EXPECT_EQ(kOpened + kErrMsgMissing + Line("InitSOE", Master(1, 5)) + kUnread, InitLines());
    lock.reset();
    EXPECT_THAT(Soe(), IsEmpty());
    EXPECT_THAT(watch.Take(), Not(Contains(StartsWith("DROP"))));
}

class CInsertEvent : public CEventTest {
  protected:
    CInsertEvent() { Init(); }

    // Puts rows with these ids in the place of all others.
    void SetIds(const std::string& table, const std::vector<std::int64_t>& ids) {
        RunSql(path, "DELETE FROM " + table);
        const std::string columns = table == "tagSOE" ? ",'old',0,0,0,'t')" : ",'old','t')";
        for (const std::int64_t id : ids)
            RunSql(path, "INSERT INTO " + table + " VALUES (" + std::to_string(id) + columns);
        watch.Take();
    }
    std::vector<std::string> Changes() {
        std::vector<std::string> changes;
        for (const std::string& sql : watch.Take())
            if (sql.rfind("DELETE", 0) == 0 || sql == "VACUUM") changes.push_back(sql);
        return changes;
    }
};
using InsertEvent = CInsertEvent;

TEST_F(InsertEvent, StandsByItself) {
    const Captured first = Insert(1, 120, 0, "[Fault]Door 0 -> 1");
    EXPECT_EQ(ReadLine(1), first.out);
    EXPECT_EQ("", first.err);
    FakeClock::Advance(1);
    Insert(0, 8191, 1, "100%s \"a\" ; -- \\ 0 -> 1");
    EXPECT_THAT(Soe(), ElementsAre(kFirstRow, "2|[Fault]Door 0 -> 1|1|120|0|" + now,
                                   "3|100%s \"a\" ; -- \\ 0 -> 1|0|8191|1|2024-03-05 09:45:01"));
    EXPECT_THAT(ErrMsg(), IsEmpty());
}

TEST_F(InsertEvent, IdsAndPruning) {
    struct Case {
        std::vector<std::int64_t> before;
        std::vector<std::string> changes;
        std::vector<std::string> after;
    };
    const Case cases[] = {
        {{1, 99999}, {}, {"1", "99999", "100000"}},
        {{1, 100000}, {"DELETE FROM tagSOE WHERE id<=-1", "VACUUM"}, {"1", "100000", "100001"}},
        {{1, 2, 100002}, {"DELETE FROM tagSOE WHERE id<=1", "VACUUM"}, {"2", "100002", "100003"}},
        {{1, 300000}, {"DELETE FROM tagSOE WHERE id<=199999", "VACUUM"}, {"300000", "300001"}},
        {{-5}, {"DELETE FROM tagSOE WHERE id<=-100006", "VACUUM"}, {"-5", "-4"}},
    };
    for (const Case& c : cases) {
        SetIds("tagSOE", c.before);
        EXPECT_EQ(ReadLine(c.before.back()), Insert(1, 120, 0, "new").out);
        EXPECT_EQ(c.changes, Changes());
        EXPECT_EQ(c.after, Soe("id"));
    }
    for (const Case& c : cases) {
        SetIds("tagErrMsg", c.before);
        std::string sql = c.changes.empty() ? "" : c.changes[0];
        if (!sql.empty()) sql.replace(sql.find("tagSOE"), 6, "tagErrMsg");
        const std::string line = sql.empty() ? sql : Line("InsertSOE", "delete sqlcommand is " + sql + "\n");
        SetIds("tagSOE", {1});
        EXPECT_EQ(line + ReadLine(1), Insert(1, 297, 0, "new").out);
        EXPECT_EQ(c.changes.size(), Changes().size());
        EXPECT_EQ(c.after, ErrMsg("id"));
    }
}

TEST_F(InsertEvent, MeasurementsOfAPort) {
    struct Measured {
        int point;
        std::uint32_t raw;
        float coefficient;
    };
    const Measured measured[] = {
        {36, 100, 0.1F},          {101, 7505, 0.1F}, {102, 15, -0.1F}, {103, UINT32_MAX, 1.0F},
        {110, UINT32_MAX, -1.0F}, {111, 99, 0.01F},  {113, 5, NAN},    {114, 16777217, 1.0F},
        {170, 3, 0.5F},           {171, 7, 0.0F},
    };
    for (const Measured& m : measured) {
        live.SetYc(128 + m.point, m.raw);
        live.SetCoefficient(128 + m.point, m.coefficient);
        live.SetYc(256 + m.point, 1);
        live.SetCoefficient(256 + m.point, 2.0F);
    }
    Insert(1, 297, 0, "e");
    Insert(1, 425, 0, "e");
    EXPECT_THAT(ErrMsg(),
                ElementsAre("1|Power_Limit:10 Output_V:750 Output_I:-1 Soc:2147483647 BMS_Need_V:-2147483648 "
                            "BMS_Need_I:0 BMS_Real_V:0 BMS_Real_I:16777216 Meter_V:1 Meter_I:0|" +
                                now,
                            "2|Power_Limit:2 Output_V:2 Output_I:2 Soc:2 BMS_Need_V:2 BMS_Need_I:2 "
                            "BMS_Real_V:2 BMS_Real_I:2 Meter_V:2 Meter_I:2|" +
                                now));
    Insert(1, 169, 0, "first port");
    Insert(0, 297, 0, "falls");
    Insert(2, 297, 0, "two");
    Insert(1, 297, 1, "second table");
    for (const int point : {41, -87, 296, 298}) Insert(1, point, 0, "beside");
    EXPECT_EQ(2U, ErrMsg().size());
    EXPECT_EQ(11U, Soe().size());
}

TEST_F(InsertEvent, LastIdCarriesOver) {
    const std::string made = "CREATE TABLE tagSOE(a,b,c,d,e,f)";  // takes a row, but cannot be read by id
    SetIds("tagSOE", {});
    SetIds("tagErrMsg", {41});
    EXPECT_EQ("", Insert(1, 120, 0, "lost").out);
    EXPECT_THAT(Soe(), IsEmpty());
    EXPECT_EQ("", Insert(1, 297, 0, "kept").out);
    EXPECT_THAT(Soe(), ElementsAre("42|kept|1|297|0|" + now));
    EXPECT_THAT(ErrMsg("id"), ElementsAre("41", "42"));

    RunSql(path, "DROP TABLE tagSOE;" + made);
    const std::string unread = Line("InsertSOE", "read record from zorsoe.db error!: no such column: id\n");
    EXPECT_EQ(unread, Insert(1, 120, 0, "lost").out);
    EXPECT_EQ(unread, Insert(1, 297, 0, "kept").out);
    EXPECT_THAT(QueryRows(path, "SELECT * FROM tagSOE"), ElementsAre("43|kept|1|297|0|" + now));

    SetIds("tagErrMsg", {});
    Insert(1, 297, 0, "no id to follow");
    EXPECT_EQ(1U, ErrMsg().size());
    EXPECT_EQ(1U, QueryRows(path, "SELECT * FROM tagSOE").size());
}

TEST_F(InsertEvent, SwitchingCounters) {
    struct Case {
        int ports;
        int point;
        int table;
        int counter;  // -1 for none
    };
    const Case cases[] = {
        {1, 137, 0, -1},  {1, 265, 0, 1},  {1, 393, 0, 2},   {1, 1161, 0, 8},
        {1, 1289, 0, -1}, {1, 264, 0, -1}, {1, 9, 0, -1},    {2, 137, 0, -1},
        {2, 265, 0, 2},   {3, 393, 0, 3},  {8, 1033, 0, 8},  {8, 1161, 0, -1},
        {2, 265, 1, -1},  {2, 266, 0, -1}, {2, -119, 0, -1}, {2, 169, 0, -1},
    };
    for (const Case& c : cases) {
        runtime.m_portCount = c.ports;
        runtime.k1Cnt = {};
        runtime.k2Cnt = {};
        std::array<std::int32_t, kPortSlots> expected{};
        if (c.counter >= 0) expected[static_cast<std::size_t>(c.counter)] = 2;
        Insert(1, c.point, c.table, "rises");
        Insert(0, c.point, c.table, "falls");
        EXPECT_EQ(expected, runtime.k1Cnt) << c.ports << " ports, point " << c.point;
        EXPECT_EQ(expected, runtime.k2Cnt);
    }
}

TEST_F(InsertEvent, NoTextRunsAsSql) {
    watch.Take();
    for (const std::string& text : {std::string("x','0','0','0','t'); DROP TABLE tagSOE; --"),
                                    std::string("'"), std::string(3000, 'x')}) {
        const char* why = text.size() > 2048 ? "the statement is too long" : "a value holds an apostrophe";
        const Captured printed = Insert(1, 120, 0, text);
        EXPECT_EQ(InsertError(why), printed.err);
        EXPECT_EQ(ReadLine(1), printed.out);
        EXPECT_THAT(watch.Take(), ElementsAre(kSelectLastSoe));
    }
    Insert(1, 120, 0, "next");
    EXPECT_THAT(Soe("id"), ElementsAre("1", "2"));
}

TEST_F(InsertEvent, MissingAndUnreadable) {
    RunSql(path, "DROP TABLE tagErrMsg");
    Captured printed = Insert(1, 297, 0, "kept all the same");
    EXPECT_EQ(Line("InsertSOE", "read record from zorsoe tagErrMsg error!: no such table: tagErrMsg\n") +
                  ReadLine(1),
              printed.out);
    EXPECT_EQ(InsertError("no such table: tagErrMsg"), printed.err);
    EXPECT_THAT(Soe("id"), ElementsAre("1", "2"));

    std::filesystem::remove(path);
    printed = Insert(1, 120, 0, "no table");
    EXPECT_EQ(Line("InsertSOE", "read record from zorsoe.db error!: no such table: tagSOE\n"), printed.out);
    EXPECT_EQ("", printed.err);

    std::filesystem::remove_all(kAppDirectory);
    printed = Insert(1, 265, 0, "no folder");
    EXPECT_EQ("Can't open database: unable to open database file\n", printed.err);
    EXPECT_EQ("", printed.out);
    EXPECT_EQ((std::array<std::int32_t, kPortSlots>{}), runtime.k1Cnt);  // not even counted
}

TEST_F(InsertEvent, FailuresOfPruning) {
    SetIds("tagSOE", {1, 100002});
    SetIds("tagErrMsg", {1, 100002});
    RunSql(path,
           "CREATE TRIGGER a BEFORE DELETE ON tagSOE BEGIN SELECT RAISE(ABORT, 'kept'); END;"
           "CREATE TRIGGER b BEFORE DELETE ON tagErrMsg BEGIN SELECT RAISE(ABORT, 'kept too'); END");
    const CForeignLock reader(path, CForeignLock::kReader);  // lets rows be read, VACUUM and inserts wait
    EXPECT_EQ(
        "delete ErrMsg from zorsoe.db error!: kept too\nVACUUM error!: database is locked\n" +
            InsertError("database is locked") +
            "delete state chage record from zorsoe.db error!: kept\nVACUUM error!: database is locked\n" +
            InsertError("database is locked"),
        Insert(1, 297, 0, "e").err);
    EXPECT_EQ(1000000, FakeClock::Slept());
}

}  // namespace
