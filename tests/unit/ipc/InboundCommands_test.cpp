// Commands of zor_main: report settings, and messages that are none.
#include <cerrno>
#include <sstream>

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using InboundCommands = CStationTest;
using testing::StartsWith;

constexpr char kOperation[] = "MsgRcvFromMain";

TEST_F(InboundCommands, Lines) {
    const std::string kFrame = "12 00 85 26 e8 03 05 00 07 00 3c 00 3c 00 3c 00 00 00 3c 00";
    EXPECT_THAT(
        SaidTo(kFrame),
        StartsWith(
            R"(MsgRcvFromMain: -------------------rev from zor_main data--------------------------------
MsgRcvFromMain: ncount:18\n
)" + kFrame +
            R"( 
MsgRcvFromMain: -------------------------------------------------------------------------
MsgRcvFromMain: msg:34086\n
MsgRcvFromMain: A1_5:60\n
)"));
}

// Each upon the one before: the kind of charger; enable, A1_3, A1_4, A1_5, A1_6, snapshot, unused, long
// interval; what is printed, which is not what is applied; reporting, ticks of work, idle, snapshot and long
// interval, forced snapshot.
TEST_F(InboundCommands, Settings) {
    for (const auto& row : Table(R"(
1 | e8 03 05 00 07 00 3c 00 3d 00 3c 00 00 00 3c 00 | A1_5:60;A1_6:61;A1_13:60;m_sendflag:1 | 1 600 610 600 36000 1
1 | e8 03 02 00 05 00 02 00 04 00 09 00 00 00 1d 00 | Set A1_3 Minvalues:3;Set A1_5 Minvalues:3;A1_5:3;A1_6:4;Set A1_12 or A1_13 Minvalues:10;A1_13:10;m_sendflag:1 | 1 50 50 100 18000 1
1 | e8 03 03 00 02 00 05 00 06 00 0a 00 00 00 1f 00 | Set A1_4 Minvalues:3;A1_5:5;A1_6:6;A1_13:10;m_sendflag:1 | 1 50 60 100 18600 1
1 | e8 03 05 00 05 00 06 00 02 00 0b 00 00 00 1e 00 | A1_5:6;Set A1_6 Minvalues:3;A1_6:3;A1_13:11;m_sendflag:1 | 1 60 50 110 18000 1
1 | e8 03 ff ff ff ff ff ff ff ff ff ff 00 00 ff ff | A1_5:65535;A1_6:65535;A1_13:65535;m_sendflag:1 | 1 655350 655350 655350 39321000 1
2 | e8 03 05 00 07 00 01 00 3c 00 3c 00 00 00 3c 00 | A1_3:5;A1_4:7;Set A1_5 Minvalues:3;A1_12:60;m_sendflag:1 | 1 50 70 600 36000 1
2 | e8 03 06 00 02 00 3c 00 3c 00 00 00 00 00 3c 00 | A1_3:6;Set A1_4 Minvalues:3;A1_4:3;Set A1_12 or A1_13 Minvalues:10;A1_12:10;m_sendflag:1 | 1 60 50 100 36000 1
0 | e8 03 09 00 09 00 09 00 09 00 0b 00 00 00 3c 00 | A1_13:11;m_sendflag:1 | 1 60 50 110 36000 1
1 | e7 03 05 00 05 00 3c 00 3c 00 3c 00 00 00 3c 00 | m_sendflag:0          | 0 60 50 110 36000 0
1 | 03 e8 05 00 05 00 3c 00 3c 00 3c 00 00 00 3c 00 | m_sendflag:0          | 0 60 50 110 36000 0)")) {
        runtime.SetChargerKind(std::stoi(row[0]));
        const std::string said = SaidTo("12 00 85 26 " + row[1]);
        const std::string texts = Texts(said, kOperation);
        EXPECT_EQ(row[2], texts.substr(texts.find("msg:34086;") + 10)) << row[1];
        EXPECT_EQ(row[3][0] == '1', !Texts(said, "Checkcache").empty());
        std::ostringstream state;
        state << runtime.m_sendflag << ' ' << runtime.m_workReportTicks << ' ' << runtime.m_idleReportTicks
              << ' ' << runtime.m_yxReportTicks << ' ' << runtime.m_minuteIntervalTicks << ' '
              << std::exchange(runtime.m_forceYxReport, 0);
        EXPECT_EQ(row[3], state.str()) << row[1];
    }
}

// What follows a process id, bytes that are missing as zeros: count and bytes that are printed, code, what is
// called.
TEST_F(InboundCommands, CountsCodesAndLengths) {
    for (const auto& row : Table(R"(
ff 03 00 01       | ncount is error!
ff ff 85 26 e8 03 | ncount is error!
fe 03 00 01       | ncount:1022 | fe 03 00 01 00 00 | msg:1     | MsgRcvFromMain:
00 00 85 2c 01 02 | ncount:0    | 00 00             | msg:34092 | MsgCall_A1_16: Rcv:00-00-00-00
01 00 85 2c 01 02 | ncount:1    | 01 00 85          | msg:34092 | MsgCall_A1_16: Rcv:00-00-00-00
03 00 85 2f 01 02 | ncount:3    | 03 00 85 2f 01    | msg:34095 | DealCacheData: delete str:0000-00-00 00:
04 00 26 85 e8 03 | ncount:4    | 04 00 26 85 e8 03 | msg:9861  | MsgRcvFromMain:
04 00 85 26 e8 03 | ncount:4    | 04 00 85 26 e8 03 | msg:34086 | MsgRcvFromMain: Set A1_4 Minvalues:3)")) {
        EXPECT_TRUE(SendText(Hex("01 00 00 00 " + row[0])));
        const std::string said = Printed([this] { runtime.MsgRcvFromMain(); });
        EXPECT_TRUE(row.size() > 2 || said == "MsgRcvFromMain: ncount is error!\n") << said;
        for (std::size_t i = 1; i < row.size(); ++i) EXPECT_THAT(said, testing::HasSubstr(row[i]));
    }
    SendText({});
    EXPECT_THAT(Printed([this] { runtime.MsgRcvFromMain(); }),
                testing::EndsWith("\nMsgRcvFromMain: msg:0\\n\n"));
}

TEST_F(InboundCommands, OneAtATime) {
    SendFrame(SettingsFrame());
    SendFrame(SettingsFrame({999}));
    const auto receive = [this] { runtime.MsgRcvFromMain(); };
    for (const auto& [sendflag, result] : {std::pair{1, 2052}, {0, 2052}, {0, -1}}) {
        EXPECT_EQ(result < 0, Printed(receive).empty());
        EXPECT_EQ(sendflag, runtime.m_sendflag);
        EXPECT_EQ(result, runtime.m_lastReceiveResult);
    }
    FailNextQueueCall(EINTR);
    EXPECT_EQ("MsgRcvFromMain: rcv error!\n", Printed(receive));
    EXPECT_EQ("", errors);
}

}  // namespace
