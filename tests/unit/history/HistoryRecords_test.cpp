// The hourly rows, and the charging record that a row or the live values give.
#include <algorithm>
#include <sstream>

#include "System/Numbers.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

struct HistoryRecords : CHistoryTest {
    std::string Hour(const std::string& time) {
        SetClock(time.c_str());
        return Printed([this] { runtime.SchedulerTick(); });
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
    const std::string kHead = "A1_16 " + kEquipmentHex + "02 ";
    // What stored records of port 2 have of these as well.
    const std::string kPort2 =
        "66 65 64 63 62 61 46 45 44 43 42 41 76 75 74 73 72 71 70 6f 6e 6d 6c 6b 6a 69 68 67 66 65 64 63 62 "
        "61 39 38 37 36 35 34 33 32 31 30 08 07 06 05 04 03 02 01 ";
    const std::string kTrade = " ff ee 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 ";
};

// Of the points of a row the first is not stored, and the last two, charge count and time, stay 0.
TEST_F(HistoryRecords, RowsAndLiveRecordsOfTheHour) {
    runtime.SetLastHour(23);
    FillPort2();
    EXPECT_THAT(Hour("2023-08-30 00:00:05"), HasSubstr("\nInsertYC: sqlcommand is INSERT INTO tagYC("));
    EXPECT_THAT(Take(), Contains(kHead + "05 00 00 30 08 23 20 00 " + kPort2 + "b1" + kTrade +
                                 "18 17 16 15 58 59 09 30 08 23 20 99 00 00 a0 00 00 00 00 d3 00 00 a0 "
                                 "d4 00 00 a0 f9 ff ff ff ff ff ff 7f"));
    EXPECT_THAT(Rows("SELECT * FROM tagYC WHERE portNo=2"),
                ElementsAre("2|2|1|72623859790382856|4294967295|193|194|195|2684354713|154|156|157|158|"
                            "101112131415161718191a1b1c1deeff|-1|"
                            "2023-08-30 09:59:58|2023-08-30 00:00:05|0|0|-7|2147483647"));
    SetArea(281, "','0','0','0','0');DROP TABLE tagYC;--");
    Hour("2023-08-30 02:00:00");
    EXPECT_EQ("insert into zorycdata.db error!: a value holds an apostrophe\n", errors);
    EXPECT_EQ(3U, Rows("SELECT id FROM tagYC").size());
}

// A row at minute 0 of a new hour, none for one that comes again; a count at minute 40.
TEST_F(HistoryRecords, MinutesOfTheHour) {
    runtime.m_portCount = 1;
    runtime.SetChargerKind(kAcCharger);
    runtime.m_sendflag = 0;
    for (const auto& row : Table(R"(
10:00:59 | InsertYC: sqlcommand is
09:59:00 | nothing
10:00:00 | nothing
10:40:59 | Checkcache: cache data is empty!
10:40:59 | nothing
11:01:00 | nothing)")) {
        const std::string said = Hour("2023-08-30 " + row[0]);
        EXPECT_THAT(said.empty() ? "nothing" : said, HasSubstr(row[1])) << row[0];
    }
    EXPECT_TRUE(Take().empty());
    EXPECT_THAT(Rows("SELECT portNo, timestamp, sendcount FROM tagYC"),
                ElementsAre("0|2023-08-30 10:00:59|0"));
}

// A stored record takes the place of the live one, except where it has nothing.
TEST_F(HistoryRecords, StoredRecord) {
    FillPort2();
    Sql("INSERT INTO tagYC VALUES(7,2,3,'72623859790382856','9',1,2,3,'1234605616436508552','8',4,5,6,"
        "'101112131415161718191a1b1c1deeff','-2','2023-08-30 09:59:58','2023-08-30 00:00:03',"
        "'16909060','3','-4','2147483648')");
    EXPECT_THAT(PostedTo("08 00 85 2c 02 30 08 23 20 00"),
                ElementsAre(kHead + "03 00 00 30 08 23 20 01 " + kPort2 + "01" + kTrade +
                            "fe ff ff ff 90 00 30 80 00 23 20 "
                            "88 77 66 55 44 33 22 11 04 03 02 01 03 00 00 00 fc ff ff ff ff ff ff 7f"));
    // Texts longer than their fields, and numbers beyond theirs.
    const std::string n500(500, '7');
    Sql("DELETE FROM tagYC; INSERT INTO tagYC(portNo,tradenumber,tradeelec,fretime,timestamp,mvalue) "
        "VALUES(1,'" +
        n500 + "','99999999999','" + n500 + "','2023-08-30 09:" + n500 + "','99999999999999999999')");
    EXPECT_THAT(PostedTo("08 00 85 2c 01 30 08 23 20 0a").at(0),
                HasSubstr(" 7f 01 77 77 77 77 77 77 77 77 77 77 77 77 77 77 77 77 ff ff ff 7f 77 "));
}

// Port; places of its point 153 and of its first energy counter (0 for none); its switching counter. Two of
// the numbers, times 128 or 32, are small again in 32 bits.
TEST_F(HistoryRecords, LivePartOfAnyPort) {
    constexpr std::uint32_t kCases[][4] = {{1, 153, 16, 101},         {8, 1049, 240, 108},
                                           {9, 1177, 0, 0},           {1 + (1U << 25), 0, 0, 0},
                                           {1 + (1U << 27), 0, 0, 0}, {0xFFFFFFFF, 0, 0, 0}};
    for (unsigned place = 0; place < 8192; ++place) live.SetYc(static_cast<int>(place), place);
    for (unsigned place = 0; place < 256; ++place) live.SetDd(static_cast<int>(place), place + 16);
    runtime.k1Cnt = {100, 101, 102, 103, 104, 105, 106, 107, 108};
    for (const auto& [port, value, energy, count] : kCases) {
        RecordBody body{};
        std::uint32_t length = 0;
        runtime.BuildA1_16Record(body, length, port);
        EXPECT_EQ(value, GetLe(body.data() + 97, 4)) << port;
        EXPECT_EQ(energy, GetLe(body.data() + 61, 8)) << port;
        EXPECT_EQ(count, GetLe(body.data() + 113, 4)) << port;
    }
}

// They are one transaction. What ends it, or fails it after the fact, costs no other record.
TEST_F(HistoryRecords, OfAnHourStandTogether) {
    const auto record = [this] {
        Sql("DELETE FROM tagYC");
        const std::string printed = Printed([this] { runtime.RecordHour(10); });
        EXPECT_EQ(6, std::count(printed.begin(), printed.end(), '\n')) << printed;  // each said once
        return Rows("SELECT portNo FROM tagYC ORDER BY portNo");
    };
    runtime.m_portCount = 3;
    runtime.m_sendflag = 0;
    CSqlWatch watch;
    EXPECT_THAT(record(), ElementsAre("1", "2", "3"));
    EXPECT_EQ(5U + 2U, watch.Take().size());  // begin, three inserts, commit
    watch.Before("commit", [] { FailNextUnlock(); });
    EXPECT_THAT(record(), ElementsAre("1", "2", "3"));
    for (const std::string way : {"ABORT", "ROLLBACK"}) {
        Sql("CREATE TRIGGER t BEFORE INSERT ON tagYC WHEN new.portNo = 2 BEGIN SELECT RAISE(" + way +
            ", 'no room'); END");
        EXPECT_THAT(record(), ElementsAre("1", "3")) << way;
        EXPECT_EQ("insert into zorycdata.db error!: no room\n", errors);
        Sql("DROP TRIGGER t");
    }
}

}  // namespace
