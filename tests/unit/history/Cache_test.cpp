// Pending records: counted, resent, acknowledged.
#include "history/ChargingRecord.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class CCache : public CHistoryTest {
  protected:
    CCache() { runtime.m_sendflag = 1; }

    std::string Resend() {
        return Printed([this] { runtime.History_A1_16(); });
    }
    std::string Check() {
        return Printed([this] { runtime.Checkcache(); });
    }
};
using Cache = CCache;

TEST_F(Cache, LifeOfASendCount) {
    AddRow(1, "2023-08-30 00:00:03", 1);
    AddRow(1, "2023-08-30 01:00:03", 0);
    for (int count = 1; count <= 5; ++count) {
        EXPECT_EQ(Line("Checkcache", Path()) + Line("Checkcache", "m_datacache:1\n"), Check());
        Resend();
        EXPECT_THAT(PostedHeads(), ElementsAre("01 03 00 00 30 08 23 20 01"));
        EXPECT_THAT(Rows("sendcount"), ElementsAre(std::to_string(count + 1), "0"));
        EXPECT_EQ(0, runtime.m_datacache);
        EXPECT_EQ("", Resend()) << "once per count";
    }
    EXPECT_EQ(Line("Checkcache", Path()) + Line("Checkcache", "cache data is empty!"), Check());
    runtime.m_datacache = 3;  // a count that no row answers to
    EXPECT_EQ(Line("ReadCacheYCdata", "You have opened zorycdata.db successfully!---") +
                  Line("ReadCacheYCdata", "get no data!"),
              Resend());
    EXPECT_EQ(3, runtime.m_datacache);
    EXPECT_THAT(Rows("sendcount"), ElementsAre("6", "0"));
    EXPECT_THAT(Posted(), IsEmpty());
}

TEST_F(Cache, LinesOfAPass) {
    RunSql(Path(),
           "INSERT INTO tagYC(id,portNo,sendcount,tradenumber,tradeelec,fretime,timestamp,chargeCnt,"
           "chargeTime,dcK1Cnt,dcK2Cnt) VALUES(7,2,3,'1a','-5','8:0','2023-08-30 00:00:03',9,8,7,6)");
    Check();
    const auto read = [](const char* text) { return Line("ReadCacheYCdata", text); };
    const auto pass = [](const char* text) { return Line("History_A1_16", text); };
    EXPECT_EQ(read("You have opened zorycdata.db successfully!---") + read("tradenum:1a\n") +
                  read("tradeelec:-5\n") + read("fretime:8:0\n") + read("collecttime:2023-08-30 00:00:03\n") +
                  read("chargeCnt:9\n") + read("chargeTime:8\n") + read("k1Cnt:7\n") + read("k2Cnt:6\n") +
                  read("get tagYC 1 data!\n") + read("updates 7 data OK!\n") + pass("_YCDB Count:1\n") +
                  pass("collecttime :2023-08-30 00:00:03\n") + pass("tradenumber:1a\n") +
                  "1a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 " + pass("fretime:8:0\n"),
              Resend());
}

TEST_F(Cache, EightAtATime) {
    for (int day = 10; day < 20; ++day)
        AddRow(day % 2 + 1, "2023-08-" + std::to_string(day) + " 00:00:00", 1);
    Check();
    EXPECT_EQ(10, runtime.m_datacache);
    FakeClock::Set(FakeClock::kStart);
    runtime.m_sendflag = 0;
    EXPECT_EQ("", Resend());
    runtime.m_sendflag = 1;
    Resend();
    EXPECT_THAT(FakeClock::Sleeps(), testing::AllOf(SizeIs(8), Each(100000U)));
    EXPECT_THAT(Rows("sendcount"), ElementsAre("2", "2", "2", "2", "2", "2", "2", "2", "1", "1"));
    const std::vector<std::string> heads = PostedHeads();
    ASSERT_EQ(8U, heads.size());
    EXPECT_EQ("01 00 00 00 10 08 23 20 01", heads[0]);
    EXPECT_EQ("02 00 00 00 17 08 23 20 01", heads[7]);
    Check();
    EXPECT_EQ(10, runtime.m_datacache);
}

TEST_F(Cache, PassAndSnapshotOfOneTick) {
    AddRow(1, "2023-08-30 00:00:00", 5);
    Check();
    runtime.SetLastHour(23);
    SetTime("2023-08-31 00:00:00");
    Tick();
    EXPECT_THAT(PostedHeads(), ElementsAre("01 00 00 00 31 08 23 20 00", "02 00 00 00 31 08 23 20 00",
                                           "01 00 00 00 30 08 23 20 01", "01 00 00 00 31 08 23 20 01",
                                           "02 00 00 00 31 08 23 20 01"));
    EXPECT_THAT(Rows("sendcount"), ElementsAre("6", "2", "2"));
    EXPECT_THAT(FakeClock::Sleeps(), testing::AllOf(SizeIs(3), Each(100000U)));
}

TEST_F(Cache, Acknowledgements) {
    const struct {
        const char* body;  // port, second, minute, hour, day, month, year, century, result
        std::string sendcounts;
        int left;
        std::string hour;
        std::string prefix;  // empty: nothing is cleared
    } kCases[] = {
        {"01 03 00 00 30 08 23 20 00", "011221", 1, "00", "2023-08-30 00:"},
        {"02 ff ff 00 30 08 23 20 00", "110221", 2, "00", "2023-08-30 00:"},
        {"00 03 00 00 30 08 23 20 00", "111221", 0, "00", "2023-08-30 00:"},
        {"ff 03 00 00 30 08 23 20 00", "111221", 0, "00", "2023-08-30 00:"},
        {"01 03 00 00 3f 0a 23 20 00", "111221", 2, "00", "2023-0a-3f 00:"},
        {"01 03 00 00 30 08 23 20 01", "111221", 0, "00", ""},
        {"01 03 00 00 30 08 23 20 02", "111221", 6, "00", ""},
        {"01 03 00 01 30 08 23 20 00", "111221", 6, "01", ""},
        {"01 03 00 10 30 08 23 20 00", "111221", 6, "16", ""},
        {"01 03 00 ff 30 08 23 20 00", "111221", 6, "255", ""},
        {"01 03 00 16 30 08 23 20 01", "111221", 6, "22", ""},
    };
    for (const auto& item : kCases) {
        RunSql(Path(), "DELETE FROM tagYC");
        AddRow(1, "2023-08-30 00:00:03", 1);
        AddRow(1, "2023-08-30 01:00:03", 1);
        AddRow(2, "2023-08-30 00:00:03", 1);
        AddRow(2, "2023-08-31 00:00:03", 2);
        AddRow(2, "2022-08-30 00:00:03", 2);
        AddRow(3, "2023-08-30 00:00:03", 1);
        Check();
        SendFrame(Hex(std::string("0b 00 85 2f ") + item.body));
        const std::string out = Printed([this] { runtime.MsgRcvFromMain(); });
        std::string expected = Line("MsgRcvFromMain", "rcv A1_16 back data!") +
                               Line("DealCacheData", "str:" + item.hour + " state:6\n");
        if (!item.prefix.empty())
            expected += Line("DealCacheData", "delete str:" + item.prefix + "\n") +
                        Line("DeletCacheData", Path()) +
                        Line("DeletCacheData",
                             "You have opened a sqlite3 database named zorycdata.db successfully!") +
                        Line("DeletCacheData", "m_datacache:" + std::to_string(item.left) + "\n");
        EXPECT_THAT(out, testing::EndsWith(expected)) << item.body;
        std::string sendcounts;
        for (const std::string& count : Rows("sendcount")) sendcounts += count;
        EXPECT_EQ(item.sendcounts, sendcounts) << item.body;
        EXPECT_EQ(item.left, runtime.m_datacache) << item.body;
    }
}

TEST_F(Cache, FailuresLeaveTheCount) {
    AddRow(1, "2023-08-30 00:00:00", 1);
    Check();
    const Bytes accepted = Hex("03 00 00 30 08 23 20 00");
    CSqliteDb other;
    other.Open(Path().c_str(), 0);
    other.Exec("BEGIN EXCLUSIVE");
    const auto acknowledge = [&] { runtime.DealCacheData(accepted.data(), 1); };
    EXPECT_THAT(Printed(acknowledge), HasSubstr("UPDATE data failed: database is locked\n"));
    EXPECT_THAT(Check(), HasSubstr("sqlite3_get_table Fail:\n"));
    EXPECT_THAT(Resend(), HasSubstr("search cache data failed:database is locked\n"));
    EXPECT_THAT(Posted(), IsEmpty());
    EXPECT_EQ(1, runtime.m_datacache);
    other.Close();

    // Someone who only reads lets the pass through, but the counts cannot be stored.
    other.Open(Path().c_str(), 0);
    other.Exec("BEGIN");
    { const CSqliteTable reading(other, "SELECT * FROM tagYC"); }
    Resend();
    EXPECT_THAT(Posted(), SizeIs(1));
    EXPECT_THAT(Rows("sendcount"), ElementsAre("1"));
    other.Close();

    Check();
    std::filesystem::remove_all(kAppDirectory);
    for (const std::function<void()>& run : std::initializer_list<std::function<void()>>{
             acknowledge, [this] { runtime.Checkcache(); }, [this] { runtime.History_A1_16(); }}) {
        Printed(run);
        EXPECT_EQ("Can't open database: unable to open database file\n", errors);
    }
    EXPECT_EQ(1, runtime.m_datacache);
}

}  // namespace
