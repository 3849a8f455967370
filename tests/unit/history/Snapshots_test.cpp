// Hourly rows and the live message, from the tick.
#include <sys/mount.h>

#include <algorithm>
#include <filesystem>

#include "tests/unit/history/HistoryTest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CSnapshots : public CHistoryTest {
  protected:
    void SetText(int index, const std::string& text) {
        std::array<char, kEntryAreaSize> area{};
        text.copy(area.data(), area.size());
        CLiveValues::Put(live.getYc(index), kEntryArea, area);
    }
    // Values of a port, every one of them different.
    void SetValues(int base, int counterBase) {
        for (const int point : {173, 192, 193, 194, 195, 153, 154, 156, 157, 158, 211, 212, 136, 177})
            live.SetYc(base + point, 0xA0000000U + static_cast<std::uint32_t>(point));
        live.SetYc(base + 192, 4294967295U);
        live.SetYc(base + 136, 4294967295U);
        live.SetDd(counterBase, 0x0102030405060708);
        live.SetDd(counterBase + 2, 0x1112131415161718);
        SetText(base + 153, "2023-08-30 09:59:58");
        SetText(base + 184,
                std::string("\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\xee\xff\x77", 17));
        SetText(base + 189, "abcdefg");
        SetText(base + 190, "ABCDEFG");
        SetText(base + 191, "0123456789abcdefghijklmnopqrstuvwxyz");
    }
};
using Snapshots = CSnapshots;

// From the middle of one hour to the same hour of the next day.
TEST_F(Snapshots, EveryHourOfADay) {
    for (const int ports : {1, 2}) {
        RunSql(Path(), "DELETE FROM tagYC");
        runtime.m_portCount = ports;
        runtime.m_sendflag = 1;
        SetTime("2023-08-30 10:00:20");
        const std::time_t start = std::time(nullptr);
        runtime.SetLastHour(10);  // what the start-up does
        const std::string out = Printed([&] {
            for (int i = 0; i < 24 * 180; ++i) {
                FakeClock::Set(start + i * 20);
                runtime.SchedulerTick();
            }
        });
        std::vector<std::string> rows;
        std::vector<std::string> heads;
        for (int i = 11; i < 35; ++i) {
            for (int port = ports == 1 ? 0 : 1; port <= (ports == 1 ? 0 : ports); ++port) {
                char row[64];
                std::snprintf(row, sizeof row, "%d|%d|2023-08-%d %02d:00:00", port, i == 24 ? 6 : 0,
                              30 + i / 24, i % 24);
                rows.emplace_back(row);
                std::snprintf(row, sizeof row, "%02d 00 00 %02d %d 08 23 20 00", port, i % 24, 30 + i / 24);
                heads.emplace_back(row);
            }
        }
        EXPECT_EQ(rows, Rows("portNo, sendcount, timestamp"));
        // The pending midnight rows followed once in each hour, until they were given up.
        std::vector<std::string> sent = PostedHeads();
        EXPECT_EQ(heads.size() + 5 * static_cast<std::size_t>(ports), sent.size());
        sent.erase(std::remove_if(sent.begin(), sent.end(),
                                  [](const std::string& head) { return head.substr(24) == "01"; }),
                   sent.end());
        EXPECT_EQ(heads, sent);
        std::size_t checks = 0;
        for (std::size_t at = 0; (at = out.find("Checkcache.#", at)) != std::string::npos; ++at) ++checks;
        EXPECT_EQ(24U * 2, checks);  // path and count
    }
}

TEST_F(Snapshots, ClockThatIsSet) {
    const struct {
        std::vector<const char*> times;  // the first is the start
        std::vector<std::string> hours;
    } kCases[] = {
        {{"30 10:00:30", "30 10:00:59"}, {}},
        {{"30 09:59:59", "30 10:00:00", "30 10:05:00", "30 09:59:00", "30 10:00:00", "30 11:00:00"},
         {"10", "11"}},
        {{"30 09:59:59", "30 10:01:00", "30 10:59:59", "30 11:00:59", "30 11:01:00"}, {"11"}},
        {{"30 09:59:59", "30 10:00:00", "30 09:00:00"}, {"10", "09"}},
        {{"30 09:59:59", "30 10:00:00", "31 10:00:00"}, {"10"}},
    };
    for (const auto& item : kCases) {
        RunSql(Path(), "DELETE FROM tagYC");
        runtime.SetLastHour(std::atoi(item.times[0] + 3));
        for (const char* time : item.times) {
            SetTime(std::string("2023-08-") + time);
            Tick();
        }
        std::vector<std::string> hours;
        for (const std::string& hour : item.hours) hours.insert(hours.end(), 2, hour);
        EXPECT_EQ(hours, Rows("substr(timestamp, 12, 2)")) << item.times[1];
    }
    EXPECT_THAT(Posted(), IsEmpty());  // reporting is off
}

TEST_F(Snapshots, CacheCheckAtMinute40) {
    const struct {
        const char* time;
        bool check;
    } kCases[] = {
        {"00:40:00", false},  // the hour that the count begins with
        {"09:39:59", false}, {"09:40:00", true}, {"09:40:59", false},
        {"10:40:59", true},  {"09:40:00", true}, {"09:41:00", false},
    };
    for (const auto& item : kCases) {
        SetTime(std::string("2023-08-30 ") + item.time);
        EXPECT_EQ(item.check ? Line("Checkcache", Path()) + Line("Checkcache", "cache data is empty!") : "",
                  Tick())
            << item.time;
    }
}

TEST_F(Snapshots, Statement) {
    SetValues(128, 32);
    runtime.k1Cnt[2] = -7;
    runtime.k2Cnt[2] = 2147483647;
    SetTime("2023-08-30 00:00:05");
    EXPECT_EQ(
        Line("InsertYC", "InsertYc You have opened zorycdata.db successfully!") +
            Line(
                "InsertYC",
                "sqlcommand is INSERT INTO tagYC(portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,"
                "fvalue,fvalue_1,fvalue_2,fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,chargeCnt,"
                "chargeTime,"
                "dcK1Cnt,dcK2Cnt) values('2','1','72623859790382856','4294967295','2684354753','2684354754',"
                "'2684354755','2684354713','2684354714','2684354716','2684354717','2684354718',"
                "'101112131415161718191a1b1c1deeff','-1','2023-08-30 09:59:58','0','0','-7','2147483647')\n"),
        Printed([this] { EXPECT_EQ(0, runtime.InsertYC(0, 2)); }));
    EXPECT_THAT(Rows("*"),
                ElementsAre("1|2|1|72623859790382856|4294967295|2684354753|2684354754|2684354755|2684354713|"
                            "2684354714|2684354716|2684354717|2684354718|101112131415161718191a1b1c1deeff|-1|"
                            "2023-08-30 09:59:58|2023-08-30 00:00:05|0|0|-7|2147483647"));
}

TEST_F(Snapshots, FreTimeCanHoldAnything) {
    const struct {
        std::string text;
        const char* stored;  // null: the row is lost
    } kCases[] = {
        {std::string(40, 'x'), "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"},
        {"\xff\xfe%s%n\"", "\xff\xfe%s%n\""},
        {"", ""},
        {"','0','0','0','0');DROP TABLE tagYC;--", nullptr},
        {"'", nullptr},
    };
    runtime.m_portCount = 1;
    runtime.m_sendflag = 1;
    for (const auto& item : kCases) {
        RunSql(Path(), "DELETE FROM tagYC");
        SetText(153, item.text);
        runtime.SetLastHour(9);
        SetTime("2023-08-30 10:00:00");
        Tick();
        EXPECT_EQ(
            item.stored != nullptr ? "" : "insert into zorycdata.db error!: a value holds an apostrophe\n",
            errors);
        EXPECT_EQ(item.stored != nullptr ? std::vector<std::string>{item.stored} : std::vector<std::string>{},
                  Rows("fretime"));
        EXPECT_THAT(PostedHeads(), ElementsAre("00 00 00 10 30 08 23 20 00"))
            << "sent whatever becomes of it";
    }
}

TEST_F(Snapshots, FilesThatCannotBeWritten) {
    runtime.m_sendflag = 1;
    const auto tickAtTen = [this] {
        SetTime("2023-08-30 10:00:00");
        runtime.SetLastHour(9);
        Tick();
        EXPECT_EQ(2U, Posted().size());
        return errors;
    };
    CSqliteDb other;
    other.Open(Path().c_str(), 0);
    other.Exec("BEGIN EXCLUSIVE");
    const std::string locked = "insert into zorycdata.db error!: database is locked\n";
    EXPECT_EQ(locked + locked, tickAtTen());
    other.Exec("COMMIT");
    EXPECT_THAT(Rows("*"), IsEmpty());
    other.Close();
    RunSql(Path(), "DROP TABLE tagYC");
    EXPECT_THAT(tickAtTen(), HasSubstr("insert into zorycdata.db error!: no such table: tagYC\n"));
    std::filesystem::remove_all(kAppDirectory);
    const std::string unopened = "Can't open database: unable to open database file\n";
    EXPECT_EQ(unopened + unopened, tickAtTen());
}

TEST_F(Snapshots, ReadOnlyFile) {
    AddRow(1, "2023-08-30 00:00:00", 1);
    runtime.m_sendflag = 1;
    runtime.m_datacache = 1;
    runtime.SetLastHour(9);
    SetTime("2023-08-30 10:00:00");
    if (mount("none", "/mnt", nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        GTEST_SKIP() << "/mnt is not the test's own";
    Tick();
    EXPECT_EQ(0, mount("none", "/mnt", nullptr, MS_REMOUNT, nullptr));
    const std::string why = "attempt to write a readonly database\n";
    const std::string lost = "insert into zorycdata.db error!: " + why;
    EXPECT_EQ(lost + lost + "delete data failed: " + why, errors);
    EXPECT_THAT(PostedHeads(), ElementsAre("01 00 00 10 30 08 23 20 00", "02 00 00 10 30 08 23 20 00",
                                           "01 00 00 00 30 08 23 20 01"));
    EXPECT_THAT(Rows("sendcount"), ElementsAre("1"));
}

TEST_F(Snapshots, LiveBody) {
    const struct {
        int count;
        std::uint32_t port;
        int base;
        int counterBase;
    } kCases[] = {{1, 0, 0, 0}, {2, 1, 0, 0}, {2, 2, 128, 32}, {8, 8, 7 * 128, 7 * 32}};
    for (const auto& item : kCases) {
        SetValues(item.base, item.counterBase);
        runtime.m_portCount = item.count;
        runtime.k1Cnt[item.port] = 0x01020304;
        runtime.k2Cnt[item.port] = -2;
        SetTime("2023-08-30 10:00:05");
        const std::string body =
            "51 50 49 48 47 46 45 44 0" + std::to_string(item.port) +
            " 05 00 10 30 08 23 20 00 66 65 64 63 62 61 46 45 44 43 42 41"
            " 76 75 74 73 72 71 70 6f 6e 6d 6c 6b 6a 69 68 67 66 65 64 63 62 61 39 38 37 36 35 34 33 32 31 30"
            " 08 07 06 05 04 03 02 01 b1 ff ee 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 18 17 16 15"
            " 58 59 09 30 08 23 20 99 00 00 a0 00 00 00 00 d3 00 00 a0 d4 00 00 a0 04 03 02 01 fe ff ff ff";
        EXPECT_EQ(Line("Send_A1_16", "msgcode: 34520 data:") + body + " \n",
                  Printed([&] { runtime.Send_A1_16(item.port); }));
        const std::vector<Bytes> posted = Posted();
        ASSERT_EQ(1U, posted.size());
        EXPECT_EQ(body, ToHex(posted[0]));
        live.ResetLiveValues();  // so that the next port finds only values of its own
        for (const int counter : {0, 2}) live.SetDd(item.counterBase + counter, 0);
    }
}

// By the order of writing, also where an index would give them by time.
TEST_F(Snapshots, RowsOfADayAreMatchedAsTheyWereWritten) {
    for (const char* hour : {"00", "02", "01", "03"}) AddRow(1, "2023-08-30 " + std::string(hour) + ":00:03");
    YcHistoryRecord records[24] = {};
    int count = 24;
    Capture([&] { runtime.ReadDBSingleYCdata("2023-08-30", 1, kWholeDay, records, count); });
    ASSERT_EQ(4, count);
    std::string found;
    for (int i = 0; i < count; ++i) found += records[i].status == ERecordStatus::Found ? '1' : '2';
    EXPECT_EQ("1221", found);
}

}  // namespace
