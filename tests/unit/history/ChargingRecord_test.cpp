// Answers to history requests, and the bytes of a stored record.
#include "history/ChargingRecord.h"

#include "tests/unit/history/HistoryTest.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

class CHistoryRequest : public CHistoryTest {
  protected:
    // Sends a request: port, day, month, year, century, hour. Returns what its handling prints.
    std::string Ask(const std::string& request) {
        SendFrame(Hex("08 00 85 2c " + request));
        const std::string out = Printed([this] { runtime.MsgRcvFromMain(); });
        return out.substr(out.find(Line("MsgRcvFromMain", "msg:34092\n")));
    }
    static void AddDay(const std::string& date, std::initializer_list<int> hours, int port = 1) {
        for (const int hour : hours) {
            char time[16];
            std::snprintf(time, sizeof time, " %02d:00:03", hour);
            AddRow(port, date + time);
        }
    }
};
using HistoryRequest = CHistoryRequest;

TEST_F(HistoryRequest, RecordForm) {
    RunSql(Path(),
           "INSERT INTO tagYC(portNo,sendcount,mvalue,mvalue_1,fvalue,fvalue_1,tradenumber,tradeelec,fretime,"
           "timestamp,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) VALUES(2,0,'72623859790382856','9',"
           "'1234605616436508552','8','101112131415161718191a1b1c1deeff','-2','2023-08-30 09:59:58',"
           "'2023-08-30 10:00:03','16909060','3','-4','2147483648')");
    live.SetYc(128 + 177, 0x33);
    live.SetYc(128 + 153, 0x44);
    live.SetYc(128 + 189, 0);
    CLiveValues::Put(live.getYc(128 + 190), kEntryArea, std::array<char, 6>{1, 2, 3, 4, 5, 6});
    live.SetDd(34, 0x55);
    const std::string expected =
        "51 50 49 48 47 46 45 44 02 03 00 10 30 08 23 20 01 00 00 00 00 00 00 06 05 04 03 02 01 " +
        ToHex(Bytes(32)) +
        " 08 07 06 05 04 03 02 01 01 ff ee 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 fe ff ff ff"
        // "2023-08-30 09:59:58", blank and all, two characters per byte, the first seven bytes
        " 90 00 30 80 00 23 20 88 77 66 55 44 33 22 11 04 03 02 01 03 00 00 00 fc ff ff ff ff ff ff 7f";
    Ask("02 30 08 23 20 0a");
    const std::vector<Bytes> posted = Posted();
    ASSERT_EQ(1U, posted.size());
    EXPECT_EQ(expected, ToHex(posted[0]));
}

TEST_F(HistoryRequest, Answers) {
    AddDay("2023-08-29", {22, 23});
    AddDay("2023-08-30", {0, 1, 2, 3, 4, 6, 7, 8});
    AddDay("2023-08-30", {5, 9}, 2);
    AddDay("2023-08-31", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14});
    AddRow(1, "2023-08-31 14:58:01");
    AddRow(2, "2023-08-31 00:00:03");
    AddRow(2, "2023-08-31 14:58:01");  // past the last minute asked for
    SetTime("2023-08-31 14:30:00");
    const auto found = [](const std::string& times) { return "01 03 00 " + times + " 08 23 20 01"; };
    const auto none = [](const std::string& times) { return "01 00 00 " + times + " 08 23 20 02"; };
    std::vector<std::string> today;
    for (int hour = 0; hour < 15; ++hour) {
        char times[16];
        std::snprintf(times, sizeof times, "%02d 31", hour);
        today.push_back(found(times));
    }
    const struct {
        const char* request;
        std::vector<std::string> heads;
    } kCases[] = {
        {"01 30 08 23 20 03", {found("03 30")}},
        {"01 30 08 23 20 05", {found("04 30")}},  // the newest one before
        {"01 30 08 23 20 17", {found("08 30")}},
        {"01 30 08 23 20 19", {found("08 30")}},  // hour 25
        {"01 30 08 23 20 ff", {found("08 30")}},
        {"01 29 08 23 20 15", {"empty"}},  // hour 21
        {"01 29 08 23 20 18", {none("00 29"), none("01 29")}},
        {"01 30 08 23 20 18",
         {found("00 30"), found("01 30"), found("02 30"), found("03 30"), found("04 30"), none("05 30"),
          none("06 30"), none("07 30")}},
        {"01 31 08 23 20 18", today},
        {"02 31 08 23 20 18", {"02 03 00 00 31 08 23 20 01"}},
        {"01 28 08 23 20 18", {"empty"}},
        {"01 3a 08 23 20 18", {"empty"}},  // day 40
        {"01 ff ff ff ff 18", {"empty"}},
        {"01 99 99 99 99 ff", {"01 01 58 14 31 08 23 20 01"}},  // compared as text: the newest of all
        {"01 ff ff ff ff ff", {"empty"}},                       // before all
        {"03 30 08 23 20 18", {"empty"}},                       // a port that the station does not have
        {"ff 30 08 23 20 0a", {"empty"}},
        {"00 30 08 23 20 0a", {"empty"}},
    };
    for (const auto& item : kCases) {
        FakeClock::Set(std::time(nullptr));
        Ask(item.request);
        EXPECT_EQ(item.heads, PostedHeads()) << item.request;
        const std::size_t records = item.heads[0] == "empty" ? 0 : item.heads.size();
        EXPECT_THAT(FakeClock::Sleeps(), testing::AllOf(SizeIs(records), Each(100000U))) << item.request;
    }
}

TEST_F(HistoryRequest, AnswersOfPortsTheStationDoesNotHave) {
    AddRow(255, "2023-08-30 10:00:03");
    runtime.k1Cnt[0] = 5;
    live.SetYc(190, 1);
    Ask("ff 30 08 23 20 0a");
    const std::vector<Bytes> posted = Posted();
    ASSERT_EQ(1U, posted.size());
    EXPECT_THAT(ToHex(posted[0]), StartsWith("51 50 49 48 47 46 45 44 ff 03 00 10 30 08 23 20 01 00"));
}

TEST_F(HistoryRequest, Lines) {
    SetTime("2023-08-31 14:30:00");
    const auto line = [](const std::string& text) { return Line("ReadDBSingleYCdata", text); };
    const auto head = [](const char* date) {
        return Line("MsgRcvFromMain", "msg:34092\n") +
               Line("MsgCall_A1_16", "Rcv:" + std::string(date) + "\n") +
               Line("ReadDBSingleYCdata", "You have opened zorycdata.db successfully!");
    };
    const auto count = [](int n) {
        return Line("MsgCall_A1_16", "Read History YCdata lenth:" + std::to_string(n) + "\n");
    };
    EXPECT_EQ(head("20-23-08-30") + count(0), Ask("01 30 08 23 20 0a"));
    EXPECT_EQ(
        head("20-23-08-31") + line("today is:2023-08-31\n") + line("this is the same day:15!\n") + count(0),
        Ask("01 31 08 23 20 18"));
    RunSql(Path(),
           "INSERT INTO tagYC(portNo,tradenumber,tradeelec,fretime,timestamp,dcK1Cnt) VALUES(1,'1a',-5,"
           "'8:0','2023-08-30 00:00:03',7)");
    AddRow(1, "2023-08-30 02:00:03");
    const auto answer = [](const std::string& time, const std::string& trade, const std::string& fretime) {
        return Line("MsgCall_A1_16", "collecttime :" + time + "\n") +
               Line("MsgCall_A1_16", "tradenumber:" + trade + "\n") +
               Line("MsgCall_A1_16", "fretime:" + fretime + "\n");
    };
    EXPECT_EQ(head("20-23-08-30") + line("today is:2023-08-31\n") + line("this is not the same day!") +
                  line("timeStr:2023-08-30 00:\n") + line("tradenum:1a\n") + line("tradeelec:-5\n") +
                  line("fretime:8:0\n") + line("collecttime:2023-08-30 00:00:03\n") + line("chargeCnt:0\n") +
                  line("chargeTime:0\n") + line("k1Cnt:7\n") + line("k2Cnt:0\n") +
                  line("timeStr:2023-08-30 01:\n") + count(2) + answer("2023-08-30 00:00:03", "1a", "8:0") +
                  answer("2023-08-30 01::00:00", "", ""),
              Ask("01 30 08 23 20 18"));
}

TEST_F(HistoryRequest, FilesThatCannotBeRead) {
    const struct {
        std::function<void()> make;
        const char* out;
        const char* err;
    } kCases[] = {
        {[] { WriteText(Path(), std::string(4096, 'x')); }, "ReadDBSingleYCdata search failed :file is ", ""},
        {[] { RunSql(Path(), "CREATE TABLE other(a)"); },
         "ReadDBSingleYCdata search failed :no such table: tagYC\n", ""},
        {[] { std::filesystem::create_directories(Path()); }, "lenth:0\n",
         "Can't open database: unable to open database file\n"},
    };
    for (const auto& item : kCases) {
        std::filesystem::remove_all(Path());
        item.make();
        EXPECT_THAT(Ask("01 30 08 23 20 18"), HasSubstr(item.out));
        EXPECT_EQ(item.err, errors);
        EXPECT_THAT(PostedHeads(), ElementsAre("empty"));
    }
}

// Texts that are longer than their field of a record, and values beyond theirs.
TEST_F(HistoryRequest, RowsThatFitNoRecord) {
    RunSql(Path(), "INSERT INTO tagYC(portNo,tradenumber,tradeelec,fretime,timestamp,mvalue) VALUES(1,'" +
                       std::string(500, 'a') + "','99999999999','" + std::string(500, '1') +
                       "','2023-08-30 09:" + std::string(500, '7') + "','99999999999999999999')");
    YcHistoryRecord records[2] = {};
    int count = 2;
    Capture([&] { runtime.ReadDBSingleYCdata("2023-08-30", 1, 10, records, count); });
    EXPECT_EQ(1, count);
    EXPECT_EQ(std::string(39, 'a'), records[0].tradenumber);
    EXPECT_EQ(std::string(20, '1'), records[0].fretime);
    EXPECT_EQ("2023-08-30 09:" + std::string(16, '7'), records[0].collecttime);
    EXPECT_EQ(2147483647, records[0].tradeelec);
    EXPECT_EQ(9223372036854775807, std::int64_t{records[0].mvalue});  // a copy: the record is packed
    EXPECT_EQ(ERecordStatus::None, records[1].status);
    count = 0;
    runtime.ReadDBSingleYCdata("2023-08-30", 1, 10, records, count);
    runtime.ReadCacheYCdata(records, count);
    count = 1;
    runtime.ReadDBSingleYCdata("2023-08-30", 1, 10, nullptr, count);
    runtime.ReadCacheYCdata(nullptr, count);
    EXPECT_EQ(1, count);
}

TEST(HistoryText, DigitsAndPacking) {
    const struct {
        const char* text;
        const char* digits;
        const char* packed;
    } kCases[] = {
        {"", "", ""},
        {"2023-08-30 10:00:03", "20230830100003", "20 23 00 80 30 01 00 00 00 30"},
        {"0123456789abcdef", "0123456789", "01 23 45 67 89 ab cd ef"},
        {"ABCDEF:/`g", "", "00 00 00 00 00"},
        {"123", "123", "12 30"},
        {"\xff\x31", "1", "01"},
    };
    for (const auto& item : kCases) {
        char digits[48] = {};
        CRuntimeData::GetDigits(digits, sizeof digits, item.text);
        EXPECT_STREQ(item.digits, digits);
        std::uint8_t packed[48];
        std::memset(packed, 0xee, sizeof packed);
        EXPECT_EQ(0, CRuntimeData::StrToBcd(packed, sizeof packed, item.text));
        EXPECT_EQ(std::string(item.packed) + (*item.packed != '\0' ? " ee" : "ee"),
                  ToHex(packed, (std::strlen(item.text) + 1) / 2 + 1));
    }
    char few[4] = "___";
    CRuntimeData::GetDigits(few, 2, "1234");
    EXPECT_STREQ("12_", few);
}

}  // namespace
