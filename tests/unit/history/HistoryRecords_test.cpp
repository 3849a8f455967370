// The history database at start-up, the hourly rows, and the charging record that a row or the live values
// give.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/StartUp.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

const std::string kFile = "/mnt/nandflash/app/zorycdata.db";
const std::string kColumns =
    "portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,fvalue_1,fvalue_2,fvalue_3,fvalue_4,"
    "tradenumber,tradeelec,fretime,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt";

class CHistoryRecords : public CStationTest {
  protected:
    CHistoryRecords() {
        Printed([this] { runtime.InitYcHistoryDatabase(); });
        runtime.m_sendflag = 1;
    }
    static void Sql(const std::string& sql) { RunSql(kFile, sql); }
    static std::vector<std::string> Rows(const std::string& sql) { return QueryRows(kFile, sql); }
    // The charging records that `act` posts, without the equipment number.
    std::vector<std::string> Records(const std::function<void()>& act) {
        std::vector<std::string> records;
        for (const std::string& message : Posted(act))
            if (message.rfind("A1_16 " + kEquipmentHex, 0) == 0) records.push_back(message.substr(30));
        return records;
    }
    std::vector<std::string> Hour(const char* time) {
        SetClock(time);
        return Records([this] { runtime.SchedulerTick(); });
    }
    // Values of port 2 in all places of a record, with some next to them that no record takes.
    void FillPort2() {
        std::istringstream raws(
            "301 173 320 4294967295 321 193 322 194 323 195 281 2684354713 282 154 284 156 285 157 286 158 "
            "339 2684354771 340 2684354772 264 4294967295 305 2684354737");
        for (std::uint32_t point = 0, raw = 0; raws >> point >> raw;)
            live.SetYc(static_cast<int>(point), raw);
        live.SetDd(32, 72623859790382856);
        live.SetDd(34, 1230066625199609624);
        SetArea(281, "2023-08-30 09:59:58");
        SetArea(312, "\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\xee\xff\x77");
        SetArea(317, "abcdefg");
        SetArea(318, "ABCDEFG");
        SetArea(319, "0123456789abcdefghijklmnopqrstuvwxyz");
        runtime.k1Cnt = {1, 1, -7};
        runtime.k2Cnt = {2, 2, INT32_MAX};
    }
    void SetArea(int point, const std::string& text) {
        std::array<char, kEntryAreaSize> area{};
        text.copy(area.data(), area.size());
        CLiveValues::Put(live.getYc(point), kEntryArea, area);
    }
};
using HistoryRecords = CHistoryRecords;

// What is there, what is said of it, and whether it gives way to a new file.
TEST_F(HistoryRecords, FilesAtStartUp) {
    MakeConfig(1);
    for (const auto& row : Table(R"(
nothing               | zorycdata.db is not exist!!!                                                  | new
empty                 | zorycdata.db is broken, so remove zorycdata.db                                | new
text                  | You have opened zorycdata.db successfully!;sqlite3_get_table Fail:;tagYC is old, so remove it! | new
other(a)              | You have opened zorycdata.db successfully!;sqlite3_get_table Fail:;tagYC is old, so remove it! | new
tagYC(portNo, chargeCnt); INSERT INTO tagYC VALUES(1, 2) --cut | You have opened zorycdata.db successfully!;sqlite3_get_table Fail:;tagYC is old, so remove it! | new
tagYC(portNo, chargeCnt) | You have opened zorycdata.db successfully!;tagYC is old, so remove it! | new
tagYC(portNo, chargecnt); INSERT INTO tagYC VALUES(1, 2) | You have opened zorycdata.db successfully!;tagYC is old, so remove it! | new
tagYC(a, chargeCnt); INSERT INTO tagYC VALUES(1, 2) | You have opened zorycdata.db successfully!;tagYC is new, so keep it!;tagYC get port: 0 data error:no such column: portNo)")) {
        std::filesystem::remove(kFile);
        if (row[0].find('(') != std::string::npos) Sql("CREATE TABLE " + row[0]);
        if (row[0].find("--cut") != std::string::npos)
            std::fstream(kFile).seekp(4096) << std::string(4096, 'x');
        if (row[0] == "empty" || row[0] == "text")
            WriteText(kFile, std::string(row[0] == "text" ? 4096 : 0, 'x'));
        const std::string said = Printed([this] { StartUp(runtime); });
        const std::string texts = Texts(said, "CheckYCDB");
        EXPECT_TRUE(texts.empty() ? said.find(kFile + '\n' + row[1] + '\n') != std::string::npos
                                  : texts == row[1])
            << said;
        const auto table = Rows("SELECT sql FROM sqlite_master WHERE type='table'");
        EXPECT_EQ(
            row.back() == "new",
            table[0] ==
                R"(CREATE TABLE tagYC(id INTEGER PRIMARY KEY,portNo INTERGER(1), sendcount INTEGER(1),)"
                R"(mvalue TEXT(20),mvalue_1 TEXT(20),mvalue_2 TEXT(20),mvalue_3 TEXT(20),mvalue_4 TEXT(20),fvalue TEXT(20),fvalue_1 TEXT(20),)"
                R"(fvalue_2 TEXT(20),fvalue_3 TEXT(20),fvalue_4 TEXT(20),tradenumber TEXT(40),tradeelec TEXT(20),fretime TEXT(40),)"
                R"(timestamp TimeStamp NOT NULL DEFAULT (datetime('now','localtime')),chargeCnt TEXT(40),chargeTime TEXT(40),dcK1Cnt TEXT(40),dcK2Cnt TEXT(40)))")
            << row[0];
        EXPECT_EQ(row.back() == "new" ? "You have opened zorycdata.db successfully!" : "",
                  Texts(said, "InitYcHistoryDatabase"));
    }
    EXPECT_EQ("zor_runtime: zorycdata.db stays slow without its indexes: no such column: portNo\n", errors);
    Printed([this] { runtime.InitYcHistoryDatabase(); });
    EXPECT_EQ("zorycdata.db create table tagYC error!: table tagYC already exists\n", errors);
}

// They come from charge count and charge time of a port's newest row.
TEST_F(HistoryRecords, Counters) {
    Sql("INSERT INTO tagYC(id,portNo,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) VALUES (5,0,1000,2000,55,66),"
        "(6,1,100,200,55,66),(3,1,7,7,55,66),(1,2,NULL,2147483647,55,66)");
    runtime.k1Cnt = {10, 11, 12, 13};
    runtime.k2Cnt = {20, 21, 22, 23};
    const auto check = [this](int ports) {
        runtime.m_portCount = ports;
        const std::string said = Printed([this] { EXPECT_EQ(0, runtime.CheckYCDB()); });
        return said.substr(said.find("keep it!\n") + 9);
    };
    EXPECT_EQ("CheckYCDB: port:0 get k1Cnt:1010 k2Cnt:2020 from tagYC!\\n\n", check(1));
    EXPECT_EQ(
        "port:1 get k1Cnt:111 k2Cnt:221 from tagYC!;port:2 get k1Cnt:12 k2Cnt:-2147483627 from tagYC!;tagYC "
        "get port: 3 no data!",
        Texts(check(3), "CheckYCDB"));
    EXPECT_THAT(runtime.k1Cnt, ElementsAre(1010, 111, 12, 13, 0, 0, 0, 0, 0));
    EXPECT_THAT(runtime.k2Cnt, ElementsAre(2020, 221, -2147483627, 23, 0, 0, 0, 0, 0));
    Sql("DELETE FROM tagYC WHERE portNo = 0");
    EXPECT_EQ("CheckYCDB: tagYC get port:0 no data!\n", check(1));
}

// Busy is not old, nor is what cannot be read for less than a second; a file that is lost is.
TEST_F(HistoryRecords, FilesThatCannotBeReadJustNow) {
    Sql("INSERT INTO tagYC(portNo) VALUES(1)");
    const auto check = [this] {
        int result = -1;
        Printed([&] { result = runtime.CheckYCDB(); });
        return result;
    };
    auto lock = std::make_unique<CForeignLock>(kFile, CForeignLock::kWriter);
    EXPECT_EQ(0, check());
    EXPECT_EQ(10000000, FakeClock::Slept());
    lock.reset();
    FailReads(1000);
    FakeClock::After(900000, [] { FailReads(0); });
    EXPECT_EQ(0, check());
    EXPECT_THAT(Rows("SELECT count(*) FROM tagYC"), ElementsAre("1"));
    FailReads(1000);
    EXPECT_EQ(1, check());
    FailReads(0);
    EXPECT_EQ("zor_runtime: zorycdata.db cannot be read: disk I/O error\n", errors);
    EXPECT_FALSE(std::filesystem::exists(kFile));
}

// Of the points of a row the first is not stored, and the last two, charge count and time, stay 0.
TEST_F(HistoryRecords, RowsAndLiveRecordsOfTheHour) {
    runtime.SetLastHour(23);
    FillPort2();
    const std::string kLive =
        "02 05 00 00 30 08 23 20 00 66 65 64 63 62 61 46 45 44 43 42 41 76 75 74 73 72 71 70 6f 6e 6d 6c "
        "6b 6a 69 68 67 66 65 64 63 62 61 39 38 37 36 35 34 33 32 31 30 08 07 06 05 04 03 02 01 b1 ff ee "
        "1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 18 17 16 15 58 59 09 30 08 23 20 99 00 00 a0 00 00 00 "
        "00 d3 00 00 a0 d4 00 00 a0 f9 ff ff ff ff ff ff 7f";
    EXPECT_THAT(Hour("2023-08-30 00:00:05"), ElementsAre(EndsWith(" 00 01 00 00 00 02 00 00 00"), kLive));
    EXPECT_THAT(
        Rows("SELECT timestamp," + kColumns + " FROM tagYC WHERE portNo=2"),
        ElementsAre(
            "2023-08-30 00:00:05|2|1|72623859790382856|4294967295|193|194|195|2684354713|154|156|157|158|"
            "101112131415161718191a1b1c1deeff|-1|2023-08-30 09:59:58|0|0|-7|2147483647"));
    // The text of the free time can hold anything.
    SetArea(281, std::string(40, 'x'));
    EXPECT_EQ(
        kLive.substr(0, 3) + "00 00 01" + kLive.substr(11, 235) + "00 00 00 00 00 00 00" + kLive.substr(266),
        Hour("2023-08-30 01:00:00").at(1));
    EXPECT_THAT(Rows("SELECT sendcount,fretime FROM tagYC WHERE portNo=2 AND id>2"),
                ElementsAre("0|" + std::string(30, 'x')));
    SetArea(281, "','0','0','0','0');DROP TABLE tagYC;--");
    Hour("2023-08-30 02:00:00");
    EXPECT_EQ("insert into zorycdata.db error!: a value holds an apostrophe\n", errors);
    EXPECT_THAT(Rows("SELECT count(*) FROM tagYC"), ElementsAre("5"));
    // A single port is number 0, and the last of eight has its own points.
    runtime.m_portCount = 1;
    EXPECT_EQ("00 00 00 03 30 08 23 20 00", Hour("2023-08-30 03:00:00").at(0).substr(0, 26));
    runtime.m_portCount = 8;
    live.SetYc(1073, 8);
    live.SetDd(224, 9);
    runtime.k1Cnt[8] = 16909060;
    runtime.k2Cnt[8] = -2;
    const std::string last = Hour("2023-08-30 04:00:00").at(7);
    EXPECT_THAT(last, testing::StartsWith("08 00 00 04 30 08 23 20 00"));
    EXPECT_THAT(last, HasSubstr(" 09 00 00 00 00 00 00 00 08 "));
    EXPECT_THAT(last, EndsWith(" 04 03 02 01 fe ff ff ff"));
}

// One at minute 0 of a new hour, none for one that comes again; a count at minute 40; the row of midnight is
// pending.
TEST_F(HistoryRecords, MinutesOfTheHour) {
    runtime.m_portCount = 1;
    runtime.SetChargerKind(kAcCharger);
    runtime.SetLastHour(9);
    const std::string kRow = R"(InsertYC: InsertYc You have opened zorycdata.db successfully!
InsertYC: sqlcommand is INSERT INTO tagYC()" +
                             kColumns +
                             R"() values('0','0','0','0','0','0','0','0','0','0','0','0',)"
                             R"('00000000000000000000000000000000','0','','0','0','0','0')\n
)";
    const std::string kCount =
        "Checkcache: /mnt/nandflash/app/zorycdata.db\nCheckcache: cache data is empty!\n";
    runtime.m_sendflag = 0;
    for (const auto& [time, said] : {std::pair{"30 10:00:59", kRow},
                                     {"30 09:59:00", ""},
                                     {"30 10:00:00", ""},
                                     {"30 10:39:59", ""},
                                     {"30 10:40:59", kCount},
                                     {"30 10:40:59", ""},
                                     {"30 11:01:00", ""},
                                     {"30 00:40:00", kCount}}) {
        SetClock(("2023-08-" + std::string(time)).c_str());
        EXPECT_EQ(said, Printed([this] { runtime.SchedulerTick(); })) << time;
    }
    EXPECT_TRUE(Take().empty());
    runtime.m_sendflag = 1;
    SetClock("2023-08-31 00:00:00");
    const std::string said = Printed([this] { runtime.SchedulerTick(); });
    EXPECT_THAT(said, EndsWith("Send_A1_16: msgcode: 34520 data:\n" + Take().at(0).substr(6) + " \n"));
    EXPECT_THAT(Rows("SELECT timestamp, sendcount FROM tagYC"),
                ElementsAre("2023-08-30 10:00:59|0", "2023-08-31 00:00:00|1"));
}

// A stored record takes the place of the live one, except where it has nothing.
TEST_F(HistoryRecords, StoredRecord) {
    FillPort2();
    Sql("INSERT INTO tagYC(id,timestamp," + kColumns +
        ") VALUES(7,'2023-08-30 00:00:03',2,3,'72623859790382856','9',1,2,3,'1234605616436508552','8',4,5,6,"
        "'101112131415161718191a1b1c1deeff','-2','2023-08-30 09:59:58','16909060','3','-4','2147483648')");
    const std::string kStored =
        "02 03 00 00 30 08 23 20 01 66 65 64 63 62 61 46 45 44 43 42 41 76 75 74 73 72 71 70 6f 6e 6d 6c "
        "6b 6a 69 68 67 66 65 64 63 62 61 39 38 37 36 35 34 33 32 31 30 08 07 06 05 04 03 02 01 01 ff ee "
        "1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 fe ff ff ff 90 00 30 80 00 23 20 88 77 66 55 44 33 22 "
        "11 04 03 02 01 03 00 00 00 fc ff ff ff ff ff ff 7f";
    const std::string kRow =
        "tradenum:101112131415161718191a1b1c1deeff;tradeelec:-2;fretime:2023-08-30 09:59:58;"
        "collecttime:2023-08-30 00:00:03;chargeCnt:16909060;chargeTime:3;k1Cnt:-4;k2Cnt:2147483647";
    const std::string kRecord =
        ";collecttime :2023-08-30 00:00:03;tradenumber:101112131415161718191a1b1c1deeff";
    std::string said = SaidTo("08 00 85 2c 02 30 08 23 20 00");
    EXPECT_EQ("You have opened zorycdata.db successfully!;" + kRow, Texts(said, "ReadDBSingleYCdata"));
    EXPECT_EQ("Rcv:20-23-08-30;Read History YCdata lenth:1" + kRecord + ";fretime:2023-08-30 09:59:58",
              Texts(said, "MsgCall_A1_16"));
    EXPECT_THAT(Records([] {}), ElementsAre(kStored));
    runtime.m_datacache = 1;
    said = Printed([this] { runtime.History_A1_16(); });
    EXPECT_EQ(
        "You have opened zorycdata.db successfully!---;" + kRow + ";get tagYC 1 data!;updates 7 data OK!",
        Texts(said, "ReadCacheYCdata"));
    EXPECT_EQ("_YCDB Count:1" + kRecord, Texts(said, "History_A1_16"));
    EXPECT_THAT(said, EndsWith("\n10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d ee ff History_A1_16: "
                               "fretime:2023-08-30 09:59:58\\n\n"));
    EXPECT_THAT(Records([] {}), ElementsAre(kStored));
    // Texts longer than their fields, and numbers beyond theirs.
    const std::string n500(500, '7');
    Sql("DELETE FROM tagYC; INSERT INTO tagYC(portNo,tradenumber,tradeelec,fretime,timestamp,mvalue) "
        "VALUES(1,'" +
        n500 + "','99999999999','" + n500 + "','2023-08-30 09:" + n500 + "','99999999999999999999')");
    said = SaidTo("08 00 85 2c 01 30 08 23 20 0a");
    for (const auto& [head, length] :
         {std::pair{"tradenum:", 39}, {"fretime:", 20}, {"collecttime:2023-08-30 09:", 16}})
        EXPECT_THAT(said, HasSubstr(head + n500.substr(0, static_cast<std::size_t>(length)) + "\\n"));
    EXPECT_THAT(
        Records([] {}).at(0),
        HasSubstr(
            " ff ff ff ff ff ff ff 7f 01 77 77 77 77 77 77 77 77 77 77 77 77 77 77 77 77 ff ff ff 7f 77 "));
}

// The records of an hour are one transaction. What ends it, or fails it after the fact, costs no other
// record.
TEST_F(HistoryRecords, OfAnHourStandTogether) {
    const struct {
        const char* trigger;
        const char* ports;
        const char* error;
    } kCases[] = {
        {"", "1 2 3", ""},
        {"RAISE(ABORT", "1 3", "insert into zorycdata.db error!: no room\n"},
        {"RAISE(ROLLBACK", "1 3", "insert into zorycdata.db error!: no room\n"},
    };
    runtime.m_portCount = 3;
    runtime.m_sendflag = 0;
    const auto ports = [] {
        std::string all;
        for (const std::string& port : Rows("SELECT portNo FROM tagYC ORDER BY portNo, id"))
            all += (all.empty() ? "" : " ") + port;
        Sql("DELETE FROM tagYC; DROP TRIGGER IF EXISTS t");
        return all;
    };
    CSqlWatch watch;
    for (const auto& c : kCases) {
        if (*c.trigger != '\0')
            Sql("CREATE TRIGGER t BEFORE INSERT ON tagYC WHEN new.portNo = 2 BEGIN SELECT " +
                std::string(c.trigger) + ", 'no room'); END");
        watch.Take();
        const std::string printed = Printed([this] { runtime.RecordHour(10); });
        EXPECT_EQ(6, std::count(printed.begin(), printed.end(), '\n')) << printed;  // each said once
        EXPECT_EQ(c.error, errors);
        if (*c.trigger == '\0') {
            EXPECT_EQ(5U, watch.Take().size());  // begin, three inserts, commit
        }
        EXPECT_EQ(c.ports, ports());
    }
    watch.Before("commit", [] { FailNextUnlock(); });
    Printed([this] { runtime.RecordHour(10); });
    EXPECT_EQ("1 2 3", ports());
    const auto lock = std::make_unique<CForeignLock>(kFile, "BEGIN; SELECT * FROM sqlite_master");
    Printed([this] { runtime.RecordHour(10); });
    EXPECT_EQ(
        "insert into zorycdata.db error!: database is locked\n"
        "insert into zorycdata.db error!: database is locked\n"
        "insert into zorycdata.db error!: database is locked\n",
        errors);
}

}  // namespace
