#include <gmock/gmock.h>

#include <cerrno>
#include <random>

#include "ipc/Frame.h"
#include "ipc/SettingsCommand.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::EndsWith;

class CInbound : public CStationTest {
  protected:
    // What one poll prints, without the lines of the handlers it calls.
    std::string Poll() { return PollOf(runtime); }
    static std::string PollOf(CRuntimeData& receiver) {
        return MaskedOf("MsgRcvFromMain", Capture([&] { receiver.MsgRcvFromMain(); }).out);
    }
    std::string PollFrame(const Bytes& frame) {
        EXPECT_TRUE(SendFrame(frame));
        return Poll();
    }
};
using Inbound = CInbound;

std::string Lines(const std::vector<std::string>& texts) {
    std::string lines;
    for (const std::string& text : texts) lines += Line("MsgRcvFromMain", text);
    return lines;
}

// The lines of every accepted command: `bytes` as dumped.
std::string Dump(int count, const std::string& bytes, int code) {
    return Lines({"-------------------rev from zor_main data--------------------------------",
                  "ncount:" + std::to_string(count) + "\n"}) +
           bytes + " \n" +
           Lines({"-------------------------------------------------------------------------",
                  "msg:" + std::to_string(code) + "\n"});
}

Settings With(std::uint16_t Settings::*field, std::uint16_t value) {
    Settings settings;
    settings.*field = value;
    return settings;
}

TEST_F(Inbound, SettingsBecomeIntervals) {
    struct Case {
        int kind;
        Settings settings;
        std::vector<std::string> texts;
        std::vector<std::uint32_t> ticks;  // work, idle, snapshot, long
    };
    const std::string on = "m_sendflag:1\n";
    const std::string floor = "Set A1_12 or A1_13 Minvalues:10\n";
    const Case cases[] = {
        {1, {}, {"A1_5:60\n", "A1_6:60\n", "A1_13:60\n", on}, {600, 600, 600, 36000}},
        {1,
         With(&Settings::a1_5, 2),
         {"Set A1_5 Minvalues:3\n", "A1_5:3\n", "A1_6:60\n", "A1_13:60\n", on},
         {50, 600, 600, 36000}},
        {1, With(&Settings::a1_6, 4), {"A1_5:60\n", "A1_6:4\n", "A1_13:60\n", on}, {600, 50, 600, 36000}},
        {1, With(&Settings::a1_6, 6), {"A1_5:60\n", "A1_6:6\n", "A1_13:60\n", on}, {600, 60, 600, 36000}},
        {1,
         With(&Settings::a1_3, 0),
         {"Set A1_3 Minvalues:3\n", "A1_5:60\n", "A1_6:60\n", "A1_13:60\n", on},
         {600, 600, 600, 36000}},
        {1,
         With(&Settings::snapshot, 0),
         {"A1_5:60\n", "A1_6:60\n", floor, "A1_13:10\n", on},
         {600, 600, 100, 36000}},
        {1,
         With(&Settings::snapshot, 9),
         {"A1_5:60\n", "A1_6:60\n", floor, "A1_13:10\n", on},
         {600, 600, 100, 36000}},
        {1,
         With(&Settings::snapshot, 10),
         {"A1_5:60\n", "A1_6:60\n", "A1_13:10\n", on},
         {600, 600, 100, 36000}},
        {1,
         With(&Settings::longInterval, 29),
         {"A1_5:60\n", "A1_6:60\n", "A1_13:60\n", on},
         {600, 600, 600, 18000}},
        {1,
         With(&Settings::longInterval, 31),
         {"A1_5:60\n", "A1_6:60\n", "A1_13:60\n", on},
         {600, 600, 600, 18600}},
        {1,
         {1000, 65535, 65535, 65535, 65535, 65535, 65535},
         {"A1_5:65535\n", "A1_6:65535\n", "A1_13:65535\n", on},
         {655350, 655350, 655350, 39321000}},
        {2,
         With(&Settings::a1_5, 1),
         {"A1_3:5\n", "A1_4:5\n", "Set A1_5 Minvalues:3\n", "A1_12:60\n", on},
         {50, 50, 600, 36000}},
        {2,
         With(&Settings::a1_4, 2),
         {"A1_3:5\n", "Set A1_4 Minvalues:3\n", "A1_4:3\n", "A1_12:60\n", on},
         {50, 50, 600, 36000}},
        {0, {}, {"A1_13:60\n", on}, {1800, 1800, 600, 36000}},
        {1, With(&Settings::enable, 999), {"m_sendflag:0\n"}, {1800, 1800, 600, 36000}},
        {1,
         With(&Settings::enable, 0xE803),
         {"m_sendflag:0\n"},
         {1800, 1800, 600, 36000}},  // 1000 read backwards
    };
    for (const Case& c : cases) {
        CTestRuntime fresh;
        fresh.m_chargerKind = c.kind;
        fresh.m_sendflag = 1;
        const Bytes frame = SettingsFrame(c.settings);
        ASSERT_TRUE(SendFrame(frame));
        EXPECT_EQ(Dump(18, ToHex(frame), 34086) + Lines(c.texts), PollOf(fresh));
        EXPECT_EQ(c.ticks, (std::vector{fresh.m_workReportTicks, fresh.m_idleReportTicks,
                                        fresh.m_yxReportTicks, fresh.m_minuteIntervalTicks}))
            << testing::PrintToString(c.texts);
        EXPECT_EQ(c.settings.enable == 1000 ? 1 : 0, fresh.m_sendflag);
        EXPECT_EQ(fresh.m_sendflag, fresh.m_forceYxReport);
    }
}

TEST_F(Inbound, CountsAtTheEdges) {
    const std::string zeros = ToHex(Bytes(1024 - 4));
    EXPECT_EQ(Lines({"ncount is error!"}), PollFrame(Hex("ff 03 00 01")));
    EXPECT_EQ(Lines({"ncount is error!"}), PollFrame(Hex("ff ff 85 26 e8 03")));
    EXPECT_EQ(Dump(1022, "fe 03 00 01 " + zeros, 1), PollFrame(Hex("fe 03 00 01")));
    EXPECT_EQ(Dump(0, "00 00", 34092), PollFrame(Hex("00 00 85 2c 01 02")));
    EXPECT_EQ(Dump(1, "01 00 85", 34092), PollFrame(Hex("01 00 85 2c 01 02")));
    EXPECT_EQ(Dump(2, "02 00 85 2f", 34095) + Lines({"rcv A1_16 back data!"}),
              PollFrame(Hex("02 00 85 2f 01 02")));
    EXPECT_EQ(Dump(3, "03 00 85 2f 01", 34095) + Lines({"rcv A1_16 back data!"}),
              PollFrame(Hex("03 00 85 2f 01 02")));
    EXPECT_EQ(Dump(4, "04 00 26 85 e8 03", 0x2685),
              PollFrame(Hex("04 00 26 85 e8 03")));  // code read backwards
    EXPECT_EQ(0, runtime.m_sendflag);
}

TEST_F(Inbound, ShortMessagesReadAsZeros) {
    ASSERT_TRUE(SendText({}));
    EXPECT_EQ(Dump(0, "00 00", 0), Poll());
    EXPECT_EQ(0, runtime.m_lastReceiveResult);
    ASSERT_TRUE(SendText(Hex("01 00 00 00 04 00 85 26 e8 03")));
    EXPECT_THAT(Poll(),
                EndsWith(Lines({"Set A1_6 Minvalues:3\n", "A1_6:3\n", "Set A1_12 or A1_13 Minvalues:10\n",
                                "A1_13:10\n", "m_sendflag:1\n"})));
    EXPECT_EQ(10, runtime.m_lastReceiveResult);
}

TEST_F(Inbound, OneCommandPerPollAndQuietWithoutOne) {
    SendFrame(SettingsFrame());
    SendFrame(SettingsFrame(With(&Settings::enable, 0)));
    Poll();
    EXPECT_EQ(1, runtime.m_sendflag);
    EXPECT_EQ(2052, runtime.m_lastReceiveResult);
    Poll();
    EXPECT_EQ(0, runtime.m_sendflag);
    EXPECT_EQ("", Poll());
    EXPECT_EQ(-1, runtime.m_lastReceiveResult);
    FailNextQueueCall(EINTR);
    EXPECT_EQ(Lines({"rcv error!"}), Poll());
}

TEST_F(Inbound, AnythingIsSurvived) {
    constexpr std::uint16_t kCodes[] = {kCommandSettings, kCommandHistoryRequest, kCommandHistoryAck};
    std::mt19937 random(1);
    const auto below = [&random](unsigned n) { return random() % n; };
    for (int i = 0; i < 10000; ++i) {
        Bytes text(below(2053));
        for (std::uint8_t& byte : text) byte = static_cast<std::uint8_t>(random());
        if (text.size() >= 8 && below(2) == 0) {  // half of them look like a command
            const std::uint16_t code = kCodes[below(3)];
            text[5] = static_cast<std::uint8_t>(below(4));
            text[6] = static_cast<std::uint8_t>(code >> 8);
            text[7] = static_cast<std::uint8_t>(code);
        }
        ASSERT_TRUE(SendText(text));
        Capture([this] { runtime.MsgRcvFromMain(); });
    }
    EXPECT_EQ(0U, Waiting());
    EXPECT_THAT(PollFrame(SettingsFrame()), EndsWith(Lines({"m_sendflag:1\n"})));
}

}  // namespace
