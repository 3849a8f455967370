// What zor_main asks of the history: records of an hour or a day; pending ones and their acknowledgement.
#include "tests/unit/history/HistoryTest.h"

namespace {

struct HistoryRequests : CHistoryTest {
    // Puts rows of port, send count and time in August 2023 in the place of all others.
    static void MakeRows(const std::string& rows) {
        Sql("DELETE FROM tagYC; INSERT INTO tagYC(portNo,sendcount,timestamp) VALUES" + rows +
            "; UPDATE tagYC SET timestamp='2023-08-'||timestamp");
    }
    static std::string SendCounts() { return Rows("SELECT group_concat(sendcount, '') FROM tagYC").at(0); }
    // Port, second, minute, hour, day and status of each charging record; "none" for one without a body.
    static std::string Heads(const std::vector<std::string>& records) {
        std::string heads;
        for (const std::string& record : records)
            heads += (heads.empty() ? "" : ", ") +
                     (record == "A1_16 " ? "none" : record.substr(30, 15) + record.substr(54, 2));
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

// Port, day, month, year, century, hour. The row of the hour or the newest one before; whole days by place,
// in the order in which they were written; today ends with this hour. A day or a port that is none has no
// row.
TEST_F(HistoryRequests, Answers) {
    MakeRows(
        "(1,0,'29 22:00:03'),(1,0,'29 23:00:10'),(1,0,'30 00:00:03'),(1,0,'30 01:00:09'),"
        "(1,0,'30 03:00:03'),(1,0,'30 02:00:03'),(2,0,'30 05:00:03'),(255,0,'30 10:00:03'),"
        "(1,0,'31 00:00:03'),(1,0,'31 01:00:03'),(1,0,'31 02:00:03'),(1,0,'31 02:58:01')");
    SetClock("2023-08-31 02:30:00");
    live.SetYc(190, 1);
    for (const auto& row : Table(R"(
01 30 08 23 20 01 | 01 09 00 01 30 01
01 30 08 23 20 17 | 01 03 00 03 30 01
01 29 08 23 20 17 | 01 03 00 22 29 01
01 29 08 23 20 15 | none
03 30 08 23 20 18 | none
01 99 99 99 99 ff | 01 01 58 02 31 01
ff 30 08 23 20 0a | ff 03 00 10 30 01
01 30 08 23 20 18 | 01 03 00 00 30 01, 01 09 00 01 30 01, 01 00 00 02 30 02, 01 00 00 03 30 02
01 31 08 23 20 18 | 01 03 00 00 31 01, 01 03 00 01 31 01, 01 03 00 02 31 01
01 29 08 23 20 18 | 01 00 00 00 29 02, 01 00 00 01 29 02)"))
        EXPECT_EQ(row[1], Heads(PostedTo("08 00 85 2c " + row[0]))) << row[0];
    EXPECT_EQ(14 * 100000, FakeClock::Slept());
}

// Counted, resent eight at a time in the order of their ids, given up at six.
TEST_F(HistoryRequests, PendingRows) {
    MakeRows(
        "(1,1,'10'),(2,5,'11'),(1,1,'12'),(2,1,'13'),(1,1,'14'),(2,1,'15'),(1,0,'15 01'),(1,1,'16'),"
        "(2,1,'17'),(1,1,'18'),(2,1,'19'),(1,6,'20')");
    EXPECT_EQ(10, Counted());
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
}

// Where the send count of a record cannot be raised, those of the others are not either.
TEST_F(HistoryRequests, SendCountThatCannotBeRaised) {
    MakeRows("(1,1,'10'),(1,1,'11'),(1,1,'12')");
    Sql("CREATE TRIGGER no BEFORE UPDATE ON tagYC WHEN old.id=2 BEGIN SELECT raise(fail, 'no'); END");
    runtime.m_datacache = 3;
    EXPECT_EQ("01 00 00 00 10 01, 01 00 00 00 11 01, 01 00 00 00 12 01", Resent());
    EXPECT_EQ("delete data failed: no\n", errors);
    EXPECT_EQ("211", SendCounts());
}

// Port, second, minute, hour, day, month, year, century, result; then the send counts, and how many are
// still resent. Only what was written at midnight of the day counts, and only result 0.
TEST_F(HistoryRequests, Acknowledgements) {
    for (const auto& row : Table(R"(
01 03 00 10 30 08 23 20 00 | 111221 | 6
01 03 00 00 30 08 23 20 02 | 111221 | 6
01 03 00 00 30 08 23 20 01 | 111221 | 0
01 03 00 00 30 08 23 20 00 | 011221 | 1
02 ff ff 00 30 08 23 20 00 | 110221 | 2)")) {
        MakeRows(
            "(1,1,'30 00:00:03'),(1,1,'30 01:00:03'),(2,1,'30 00:00:03'),(2,2,'31 00:00:03'),"
            "(2,2,'29 00:00:03'),(3,1,'30 00:00:03')");
        EXPECT_EQ(6, Counted());
        SaidTo("0b 00 85 2f " + row[0]);
        EXPECT_EQ(row[1], SendCounts()) << row[0];
        EXPECT_EQ(std::stoi(row[2]), runtime.m_datacache) << row[0];
    }
}

}  // namespace
