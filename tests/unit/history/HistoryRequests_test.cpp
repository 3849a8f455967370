// What zor_main asks of the history: records of an hour or a day, the pending ones, and their
// acknowledgement.
#include <filesystem>
#include <sstream>

#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

class CHistoryRequests : public CStationTest {
  protected:
    CHistoryRequests() {
        Printed([this] { runtime.InitYcHistoryDatabase(); });
        runtime.m_sendflag = 1;
    }
    static void Sql(const std::string& sql) { RunSql(AppFile(kHistoryFile), sql); }
    // Makes rows of port, send count and "day hour:minute:second" of August 2023 in the place of all others.
    static void MakeRows(const std::string& rows) {
        std::string sql = "DELETE FROM tagYC";
        const auto table = Table(rows);
        for (const std::string& row : table.at(0)) {
            std::istringstream words(row);
            std::string port, count, time;
            std::getline(words >> port >> count >> std::ws, time);
            sql += ";INSERT INTO tagYC(portNo,sendcount,timestamp) VALUES(" + port + ',' + count +
                   ",'2023-08-" + time + "')";
        }
        Sql(sql);
    }
    static std::string SendCounts() {
        return QueryRows(AppFile(kHistoryFile), "SELECT group_concat(sendcount, '') FROM tagYC").at(0);
    }
    // Port, second, minute, hour, day and status of each charging record; "none" for one without a body.
    static std::string Heads(const std::vector<std::string>& messages) {
        std::string heads;
        for (const std::string& m : messages)
            if (m.rfind("A1_16 ", 0) == 0)
                heads += (heads.empty() ? "" : ", ") +
                         (m.size() == 6 ? "none" : m.substr(30, 15) + m.substr(54, 2));
        return heads;
    }
    std::string Resent() {
        return Heads(Posted([this] { runtime.History_A1_16(); }));
    }
    int Counted() {
        Printed([this] { runtime.Checkcache(); });
        return runtime.m_datacache;
    }
};
using HistoryRequests = CHistoryRequests;

// Port, day, month, year, century, hour. The row of the hour or the newest one before; whole days by place,
// in the order in which they were written; today ends with this hour. A day or a port that is none has no
// row.
TEST_F(HistoryRequests, Answers) {
    MakeRows(
        "1 0 29 22:00:03|1 0 29 23:00:10|1 0 30 00:00:03|1 0 30 01:00:09|1 0 30 03:00:03|1 0 30 02:00:03|2 0 "
        "30 05:00:03|"
        "255 0 30 10:00:03|1 0 31 00:00:03|1 0 31 01:00:03|1 0 31 02:00:03|1 0 31 02:58:01");
    SetClock("2023-08-31 02:30:00");
    live.SetYc(190, 1);
    for (const auto& row : Table(R"(
01 30 08 23 20 01 | 01 09 00 01 30 01
01 30 08 23 20 17 | 01 03 00 03 30 01
01 29 08 23 20 17 | 01 03 00 22 29 01
01 29 08 23 20 15 | none
01 3a 08 23 20 18 | none
03 30 08 23 20 18 | none
01 99 99 99 99 ff | 01 01 58 02 31 01
ff 30 08 23 20 0a | ff 03 00 10 30 01
01 30 08 23 20 18 | 01 03 00 00 30 01, 01 09 00 01 30 01, 01 00 00 02 30 02, 01 00 00 03 30 02
01 31 08 23 20 18 | 01 03 00 00 31 01, 01 03 00 01 31 01, 01 03 00 02 31 01
01 29 08 23 20 18 | 01 00 00 00 29 02, 01 00 00 01 29 02)"))
        EXPECT_EQ(row[1], Heads(PostedTo("08 00 85 2c " + row[0]))) << row[0];
    EXPECT_EQ(14 * 100000, FakeClock::Slept());
    EXPECT_THAT(Texts(SaidTo("08 00 85 2c 01 31 08 23 20 18"), "ReadDBSingleYCdata"),
                HasSubstr(";today is:2023-08-31;this is the same day:3!;timeStr:2023-08-31 00:;"));
    const std::string said = SaidTo("08 00 85 2c 01 29 08 23 20 18");
    EXPECT_THAT(Texts(said, "ReadDBSingleYCdata"),
                EndsWith(";this is not the same day!;timeStr:2023-08-29 00:;timeStr:2023-08-29 01:"));
    EXPECT_THAT(Texts(said, "MsgCall_A1_16"),
                HasSubstr(";Read History YCdata lenth:2;collecttime :2023-08-29 00::00:00;"));
}

// Counted, resent eight at a time in the order of their ids, given up at six.
TEST_F(HistoryRequests, PendingRows) {
    MakeRows("1 1 10|2 5 11|1 1 12|2 1 13|1 1 14|2 1 15|1 0 15 01|1 1 16|2 1 17|1 1 18|2 1 19|1 6 20");
    EXPECT_EQ("Checkcache: /mnt/nandflash/app/zorycdata.db\nCheckcache: m_datacache:10\\n\n",
              Printed([this] { runtime.Checkcache(); }));
    runtime.m_sendflag = 0;
    EXPECT_EQ("", Resent());
    runtime.m_sendflag = 1;
    EXPECT_EQ(
        "01 00 00 00 10 01, 02 00 00 00 11 01, 01 00 00 00 12 01, 02 00 00 00 13 01, 01 00 00 00 14 01, "
        "02 00 00 00 15 01, 01 00 00 00 16 01, 02 00 00 00 17 01",
        Resent());
    EXPECT_EQ(800000, FakeClock::Slept());
    EXPECT_EQ("262222022116", SendCounts());
    EXPECT_EQ("", Resent());  // until the next count
    EXPECT_EQ(9, Counted());
    Sql("UPDATE tagYC SET sendcount=6");
    EXPECT_EQ(
        "ReadCacheYCdata: You have opened zorycdata.db successfully!---\nReadCacheYCdata: get no data!\n",
        Printed([this] { runtime.History_A1_16(); }));
    EXPECT_EQ(0, Counted());
}

// Where the send count of a record cannot be raised, those of the others are not either.
TEST_F(HistoryRequests, SendCountThatCannotBeRaised) {
    MakeRows("1 1 10|1 1 11|1 1 12");
    Sql("CREATE TRIGGER no BEFORE UPDATE ON tagYC WHEN old.id=2 BEGIN SELECT raise(fail, 'no'); END");
    runtime.m_datacache = 3;
    EXPECT_EQ("01 00 00 00 10 01, 01 00 00 00 11 01, 01 00 00 00 12 01", Resent());
    EXPECT_EQ("delete data failed: no\n", errors);
    EXPECT_EQ("211", SendCounts());
}

// In one tick: what the refresh reports, then the pending rows, then the signals.
TEST_F(HistoryRequests, OrderInATick) {
    runtime.m_portCount = 1;
    Load({{}, {"1,'a',2,0,0,1,0,0,0"}});
    MakeRows("1 1 10");
    runtime.m_idleReportTicks = 0;
    runtime.m_datacache = 1;
    std::string order;
    for (const std::string& message : Posted([this] { runtime.SchedulerTick(); }))
        order += message.substr(0, message.find(' ') + 1);
    EXPECT_EQ("A1_6 A1_16 A1_14 ", order);
}

// Port, second, minute, hour, day, month, year, century, result; then the send counts, how many are pending
// then, and how many of them are still resent. Only what was written at midnight of the day counts, and only
// result 0.
TEST_F(HistoryRequests, Acknowledgements) {
    for (const auto& row : Table(R"(
01 03 00 10 30 08 23 20 00 | 111221 | 6
01 03 00 01 30 08 23 20 01 | 111221 | 6
01 03 00 00 30 08 23 20 02 | 111221 | 6
01 03 00 00 30 08 23 20 01 | 111221 | 0
01 03 00 00 30 08 23 20 00 | 011221 | 1
02 ff ff 00 30 08 23 20 00 | 110221 | 2
03 03 00 00 3f 0a 23 20 00 | 111221 | 1)")) {
        MakeRows(
            "1 1 30 00:00:03|1 1 30 01:00:03|2 1 30 00:00:03|2 2 31 00:00:03|2 2 29 00:00:03|3 1 30 "
            "00:00:03");
        EXPECT_EQ(6, Counted());
        SaidTo("0b 00 85 2f " + row[0]);
        EXPECT_EQ(row[1], SendCounts()) << row[0];
        EXPECT_EQ(std::stoi(row[2]), runtime.m_datacache) << row[0];
    }
    const std::string said = SaidTo("0b 00 85 2f 01 03 00 00 30 08 23 20 00");
    EXPECT_THAT(Texts(said, "MsgRcvFromMain"), EndsWith(";msg:34095;rcv A1_16 back data!"));
    EXPECT_EQ("str:00 state:1;delete str:2023-08-30 00:", Texts(said, "DealCacheData"));
    EXPECT_EQ(
        "/mnt/nandflash/app/zorycdata.db;You have opened a sqlite3 database named zorycdata.db "
        "successfully!;m_datacache:1",
        Texts(said, "DeletCacheData"));
}

// Each operation says so, waits for a second, and loses nothing else.
TEST_F(HistoryRequests, FileThatIsLockedOrGone) {
    MakeRows("0 1 30");
    runtime.m_datacache = 1;
    runtime.m_portCount = 1;
    runtime.SetChargerKind(0);
    const std::function<void()> kActs[] = {
        [this] { runtime.InsertYC(10, 0); }, [this] { runtime.Checkcache(); },
        [this] { runtime.History_A1_16(); },
        [this] { runtime.DealCacheData(Hex("03 00 00 30 08 23 20 00").data(), 0); },
        [this] { runtime.MsgCall_A1_16(Hex("30 08 23 20 18").data(), 0); }};
    const char* kLast[] = {
        "", "Checkcache: sqlite3_get_table Fail:",
        "ReadCacheYCdata: search cache data failed:database is locked\\n\nReadCacheYCdata: get no data!",
        "DeletCacheData: UPDATE data failed: database is locked",
        "ReadDBSingleYCdata search failed :database is locked"};
    auto lock = std::make_unique<CForeignLock>(AppFile(kHistoryFile), CForeignLock::kWriter);
    for (std::size_t i = 0; i < std::size(kActs); ++i) {
        FakeClock::Set(FakeClock::kStart);
        runtime.m_historyWait.Renew();
        EXPECT_THAT(Printed(kActs[i]), HasSubstr(kLast[i]));
        EXPECT_EQ(i == 0 ? "insert into zorycdata.db error!: database is locked\n" : "", errors);
        EXPECT_EQ(1000000, FakeClock::Slept()) << i;
    }
    EXPECT_EQ("none", Heads(Take()));
    lock.reset();
    lock = std::make_unique<CForeignLock>(AppFile(kHistoryFile), "BEGIN; SELECT * FROM tagYC");
    runtime.m_historyWait.Renew();
    runtime.m_resendRest = 0;
    EXPECT_EQ("00 00 00 00 30 01",
              Resent());  // one that is only read can be resent, but not counted
    lock.reset();
    EXPECT_EQ("1", SendCounts());
    std::filesystem::remove_all("/mnt/nandflash/app");
    runtime.m_datacache = 1;
    for (const auto& act : kActs) {
        runtime.m_historyWait.Renew();
        runtime.m_resendRest = 0;
        Printed(act);
        EXPECT_EQ("Can't open database: unable to open database file\n", errors);
    }
}

// Neither the loop nor a start-up reads or sorts the whole table, which grows for years.
TEST_F(HistoryRequests, Plans) {
    std::string rows = "1 1 30 00:00:03";
    for (int i = 0; i < 8; ++i)
        rows += "|" + std::to_string(1 + i % 2) + " 1 30 0" + std::to_string(i) + ":00:03";
    MakeRows(rows);
    CSqlWatch watch;
    Printed([this] {
        runtime.CheckYCDB();
        runtime.Checkcache();
        runtime.History_A1_16();
        runtime.InsertYC(1, 1);
    });
    for (const char* command : {"08 00 85 2c 01 30 08 23 20 0a", "08 00 85 2c 01 30 08 23 20 18",
                                "08 00 85 2c 01 05 03 24 20 18", "0b 00 85 2f 01 03 00 00 30 08 23 20 00"})
        SaidTo(command);
    int judged = 0;
    for (const std::string& sql : watch.Take()) {
        // The first row of all is at hand in any file.
        if (std::string("sSU").find(sql[0]) == std::string::npos || sql == "select * from tagYC limit 1")
            continue;
        std::string plan;
        for (const std::string& row : QueryRows(AppFile(kHistoryFile), "EXPLAIN QUERY PLAN " + sql))
            plan += row;
        const bool reads = plan.find("SCAN") != std::string::npos;
        EXPECT_TRUE(!reads || plan.find("INDEX tagYC_pending") != std::string::npos)
            << sql << plan;  // it holds no other
        EXPECT_EQ(std::string::npos, plan.find("TEMP B-TREE")) << sql << plan;
        ++judged;
    }
    EXPECT_EQ(2 + 1 + 1 + 8 + 3 + 2, judged);
}

}  // namespace
