// Commands of zor_main: report settings, and messages that are none.
#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <regex>

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

// Lines without frame and operation, on one line.
std::string Brief(const std::string& said) {
    static const std::regex noise("MsgRcvFromMain: (-+[^\n]*\n)?|\\\\n|\n$| (?=\n)");
    return std::regex_replace(std::regex_replace(said, noise, ""), std::regex("\n"), "|");
}

class CInboundCommands : public CStationTest {
  protected:
    // Reporting, ticks of work, idle, snapshot and long interval, and whether a snapshot is forced.
    std::array<std::uint32_t, 6> State() {
        return {static_cast<std::uint32_t>(runtime.m_sendflag),
                runtime.m_workReportTicks,
                runtime.m_idleReportTicks,
                runtime.m_yxReportTicks,
                runtime.m_minuteIntervalTicks,
                static_cast<std::uint32_t>(std::exchange(runtime.m_forceYxReport, 0))};
    }
};
using InboundCommands = CInboundCommands;

TEST_F(InboundCommands, Lines) {
    const std::string kFrame = "12 00 85 26 e8 03 05 00 07 00 3c 00 3c 00 3c 00 00 00 3c 00";
    EXPECT_EQ(
        "MsgRcvFromMain: -------------------rev from zor_main data--------------------------------\n"
        "MsgRcvFromMain: ncount:18\\n\n" +
            kFrame +
            " \n"
            "MsgRcvFromMain: -------------------------------------------------------------------------\n"
            "MsgRcvFromMain: msg:34086\\n\n"
            "MsgRcvFromMain: A1_5:60\\n\n"
            "MsgRcvFromMain: A1_6:60\\n\n"
            "MsgRcvFromMain: A1_13:60\\n\n"
            "Checkcache: /mnt/nandflash/app/zorycdata.db\n"
            "Checkcache: sqlite3_get_table Fail:\\n\n"
            "MsgRcvFromMain: m_sendflag:1\\n\n",
        SaidTo(kFrame));
}

// Each upon the one before. Words: enable, A1_3, A1_4, A1_5, A1_6, snapshot, unused, long interval.
TEST_F(InboundCommands, Settings) {
    runtime.InitYcHistoryDatabase();
    const struct {
        std::int32_t kind;
        const char* words;
        const char* said;
        std::array<std::uint32_t, 6> state;
    } kCases[] = {
        {kDcCharger,
         "e8 03 05 00 07 00 3c 00 3d 00 3c 00 00 00 3c 00",
         "A1_5:60|A1_6:61|A1_13:60",
         {1, 600, 610, 600, 36000, 1}},
        // What is printed is not what is applied.
        {kDcCharger,
         "e8 03 02 00 05 00 02 00 04 00 09 00 00 00 1d 00",
         "Set A1_3 Minvalues:3|Set A1_5 Minvalues:3|A1_5:3|A1_6:4|Set A1_12 or A1_13 Minvalues:10|A1_13:10",
         {1, 50, 50, 100, 18000, 1}},
        {kDcCharger,
         "e8 03 03 00 02 00 05 00 06 00 0a 00 00 00 1f 00",
         "Set A1_4 Minvalues:3|A1_5:5|A1_6:6|A1_13:10",
         {1, 50, 60, 100, 18600, 1}},
        {kDcCharger,
         "e8 03 05 00 05 00 06 00 02 00 0b 00 00 00 1e 00",
         "A1_5:6|Set A1_6 Minvalues:3|A1_6:3|A1_13:11",
         {1, 60, 50, 110, 18000, 1}},
        {kDcCharger,
         "e8 03 ff ff ff ff ff ff ff ff ff ff 00 00 ff ff",
         "A1_5:65535|A1_6:65535|A1_13:65535",
         {1, 655350, 655350, 655350, 39321000, 1}},
        {kAcCharger,
         "e8 03 05 00 07 00 01 00 3c 00 3c 00 00 00 3c 00",
         "A1_3:5|A1_4:7|Set A1_5 Minvalues:3|A1_12:60",
         {1, 50, 70, 600, 36000, 1}},
        {kAcCharger,
         "e8 03 06 00 02 00 3c 00 3c 00 00 00 00 00 3c 00",
         "A1_3:6|Set A1_4 Minvalues:3|A1_4:3|Set A1_12 or A1_13 Minvalues:10|A1_12:10",
         {1, 60, 50, 100, 36000, 1}},
        {0, "e8 03 09 00 09 00 09 00 09 00 0b 00 00 00 3c 00", "A1_13:11", {1, 60, 50, 110, 36000, 1}},
        // Off: anything but 1000, also read backwards.
        {kDcCharger, "e7 03 05 00 05 00 3c 00 3c 00 3c 00 00 00 3c 00", "", {0, 60, 50, 110, 36000, 0}},
        {kDcCharger, "03 e8 05 00 05 00 3c 00 3c 00 3c 00 00 00 3c 00", "", {0, 60, 50, 110, 36000, 0}},
    };
    for (const auto& c : kCases) {
        runtime.SetChargerKind(c.kind);
        const std::string frame = "12 00 85 26 " + std::string(c.words);
        const std::string counted =
            c.state[0] == 0
                ? ""
                : "|Checkcache: /mnt/nandflash/app/zorycdata.db|Checkcache: cache data is empty!|";
        EXPECT_EQ("ncount:18|" + frame + "|msg:34086|" + c.said + counted +
                      "m_sendflag:" + std::to_string(c.state[0]),
                  Brief(SaidTo(frame)));
        EXPECT_EQ(c.state, State()) << c.words;
    }
}

// A message's whole text, process id included, and the beginning of what is said to it.
TEST_F(InboundCommands, CountsCodesAndLengths) {
    const struct {
        const char* text;
        const char* said;
    } kCases[] = {
        {"01 00 00 00 ff 03 00 01", "ncount is error!"},
        {"01 00 00 00 ff ff 85 26 e8 03", "ncount is error!"},
        {"01 00 00 00 fe 03 00 01", "ncount:1022|fe 03 00 01 00 "},
        {"01 00 00 00 00 00 85 2c 01 02", "ncount:0|00 00|msg:34092|MsgCall_A1_16: Rcv:00-00-00-00|"},
        {"01 00 00 00 01 00 85 2c 01 02", "ncount:1|01 00 85|msg:34092|MsgCall_A1_16: Rcv:00-00-00-00|"},
        {"01 00 00 00 03 00 85 2f 01 02",
         "ncount:3|03 00 85 2f 01|msg:34095|rcv A1_16 back data!|DealCacheData: str:00 state:0|"
         "DealCacheData: delete str:0000-00-00 00:|"},
        {"01 00 00 00 04 00 26 85 e8 03", "ncount:4|04 00 26 85 e8 03|msg:9861"},
        {"", "ncount:0|00 00|msg:0"},
        {"01 00 00 00 04 00 85 26 e8 03", "ncount:4|04 00 85 26 e8 03|msg:34086|Set A1_3 Minvalues:3|"},
    };
    for (const auto& c : kCases) {
        EXPECT_TRUE(SendText(Hex(c.text)));
        const bool settings = &c == std::end(kCases) - 1;
        const std::string said = Brief(Said([this] { runtime.MsgRcvFromMain(); }));
        EXPECT_EQ(c.said, said.substr(0, settings || said.size() > 99 ? std::strlen(c.said) : said.size()))
            << c.text;
        EXPECT_EQ(settings ? 50U : 1800U, runtime.m_workReportTicks) << c.text;
    }
}

TEST_F(InboundCommands, OneAtATime) {
    SendFrame(SettingsFrame());
    SendFrame(SettingsFrame({999}));
    const auto receive = [this] { runtime.MsgRcvFromMain(); };
    for (const auto& [sendflag, result] : {std::pair{1, 2052}, {0, 2052}, {0, -1}}) {
        EXPECT_EQ(result < 0, Said(receive).empty());
        EXPECT_EQ(sendflag, runtime.m_sendflag);
        EXPECT_EQ(result, runtime.m_lastReceiveResult);
    }
    FailNextQueueCall(EINTR);
    EXPECT_EQ("MsgRcvFromMain: rcv error!\n", Said(receive));
    EXPECT_EQ("", errors);
}

}  // namespace
