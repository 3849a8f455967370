// The player on a clock of the test's own.
#include "tools/zorctl/Player.h"

#include <gmock/gmock.h>
#include <sys/msg.h>

#include <memory>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "reports/Messages.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::HasSubstr;

class CPlayerTest : public CStationTest {
  protected:
    CPlayerTest() : events(AppFile(kEventFile)) {
        RunSql(AppFile(kEventFile), kCreateSoe);
        EXPECT_TRUE(channel.Open(DeadlineIn(0), stop));
    }

    void Start(const std::string& text, double speed = 1.0, EPlayOutput output = EPlayOutput::All) {
        std::vector<std::string> faults;
        scenario = ParseScenario("t", text, faults);
        ASSERT_TRUE(faults.empty()) << faults[0];
        log = CPlayLog(output);
        player = std::make_unique<CPlayer>(scenario, PlayGround{bench, channel, stop, events, log}, speed);
    }
    // Lets the player look at this time of the play. False when the play is over.
    bool At(double seconds) {
        const auto micros = static_cast<std::int64_t>(seconds * 1e6);
        const std::timespec wall{static_cast<std::time_t>(FakeClock::kStart + micros / 1000000),
                                 static_cast<long>(micros % 1000000 * 1000)};
        bool on = false;
        const Captured shown = Capture([&] { on = player->Advance({PlayTime{micros}, wall}); });
        out += shown.out;
        err += shown.err;
        return on;
    }
    // The process sends A1_14 of the port with a new state.
    void SendState(int port, std::uint8_t gun) {
        runtime.m_sendflag = 1;
        live.SetGunState(port, gun);
        Capture([&] {
            runtime.Send_DC_A1_14(port);
            runtime.DrainOutbound();
        });
    }
    void Record(const char* text, int point, int value) {
        RunSql(AppFile(kEventFile),
               "INSERT INTO tagSOE(event, value, point_no, yx_table, timestamp) VALUES('" +
                   std::string(text) + "'," + std::to_string(value) + ',' + std::to_string(point) +
                   ",0,'now')");
    }

    CBenchShm bench;
    CStopSignals stop;
    CMainChannel channel;
    CEventReader events;
    CPlayLog log{EPlayOutput::All};
    Scenario scenario;
    std::unique_ptr<CPlayer> player;
    std::string out;
    std::string err;
};
using Player = CPlayerTest;

TEST_F(Player, LinesAreDueInTheirTime) {
    // It is 09:45:00; the second day line is for tomorrow.
    Start("yx 1 on\n+2s yx 2 on\n3s yx 3 on\nat 09:45:10 yx 4 on\n1s yx 5 on\nat 09:45:09 yx 6 on\n", 2.0);
    const struct {
        double time;
        int point;  // the first one that is still off
    } kCases[] = {{0, 2},   {0.99, 2}, {1, 3},    {1.4, 3},  {1.5, 4},
                  {9.9, 4}, {10.2, 5}, {10.6, 5}, {10.7, 6}, {86408.9, 6}};
    for (const auto& item : kCases) {
        EXPECT_TRUE(At(item.time)) << item.time;
        for (int point = 1; point <= 6; ++point)
            EXPECT_EQ(point < item.point ? 1 : 0, bench.State(ELiveTable::Yx, point))
                << item.time << ' ' << point;
    }
    EXPECT_FALSE(At(86409));
    EXPECT_EQ(1, bench.State(ELiveTable::Yx, 6));
    EXPECT_FALSE(At(86410));
    EXPECT_EQ(0, player->Failures());
    EXPECT_THAT(out, HasSubstr("09:45:01.500 -- yx 3 on\n"));
}

// Each line and the live values that it leaves, as zorctl get prints them.
TEST_F(Player, ActionsMoveLiveValues) {
    const struct {
        const char* line;
        std::vector<std::pair<const char*, const char*>> values;
    } kCases[] = {
        {"port 1 plug", {{"yx 135", "0"}, {"yx 134", "1"}, {"gun 1", "1"}}},
        {"port 2 charge", {{"gun 2", "2"}, {"yx 305", "1"}}},
        {"port 2 unplug", {{"gun 2", "0"}, {"yx 262", "0"}, {"yx 263", "1"}}},
        {"port 0 lock", {{"yx 136", "1"}}},
        {"port 1 stop", {{"yx 177", "0"}, {"gun 1", "3"}}},
        {"port 8 fault", {{"yx 995", "1"}}},
        {"port 8 clear", {{"yx 995", "0"}}},
        {"emergency on", {{"yx 20", "1"}}},
        {"yx2 1 7 port 2", {{"yx2 129", "7"}}},
        {"yc 114 -1", {{"yc 114 --raw", "4294967295"}}},
        {"yc 130 text \"A # B\" port 1 # rest", {{"yc 130 --text", "A # B"}}},
        {"dd 15 9223372036854775807 port 2", {{"dd 47", "9223372036854775807"}}},
        {"equipment 5a4f522d30303031", {{"equipment", "5a4f522d30303031"}}},
    };
    for (const auto& item : kCases) {
        Start(item.line);
        EXPECT_FALSE(At(0)) << item.line;
        for (const auto& [place, value] : item.values)
            EXPECT_EQ(value + std::string("\n"), Call(std::string("get ") + place).out) << item.line;
    }
}

TEST_F(Player, RampsMoveEvenly) {
    Start("ramp yc 103 from 20 to 80 over 60s\nramp dd 1 from 90 to 0 over 10s port 2\n5s dd 1 7 port 2\n");
    const struct {
        double time;
        std::uint32_t yc;
        std::uint64_t dd;
    } kCases[] = {{0, 20, 90}, {1, 21, 81}, {4.9, 25, 46}, {5, 25, 7}, {6, 26, 7}, {59.6, 80, 7}};
    for (const auto& item : kCases) {
        EXPECT_TRUE(At(item.time));
        EXPECT_EQ(item.yc, bench.Yc(103)->raw) << item.time;
        EXPECT_EQ(item.dd, bench.Dd(33)) << item.time;
    }
    EXPECT_FALSE(At(61));
    EXPECT_EQ(80U, bench.Yc(103)->raw);
}

// What is sent between the line and its end, and what the player says of it.
TEST_F(Player, ExpectationsAreHeldAgainstWhatCame) {
    const auto post = [this](std::uint16_t code, const Bytes& body) {
        runtime.PostMsg(code, body.data(), static_cast<std::uint32_t>(body.size()));
        runtime.DrainOutbound();
    };
    const auto document = [&](const std::string& text) { post(kCodeA1_6, Bytes(text.begin(), text.end())); };
    const std::string head = "51 50 49 48 47 46 45 44 ";
    const auto changes = [&] { post(kCodeA1_11, Hex(head + "02 01 00 02 14 00 01 15 00 00")); };
    const std::function<void()> nothing = [] {};
    const struct {
        const char* line;
        std::function<void()> what;
        const char* outcome;  // "" when met
    } kCases[] = {
        {"expect A1_14 port 2 state 3 within 1s", [&] { SendState(2, 1); }, ""},
        {"expect A1_14 port 2 state 6..9 within 1s", [&] { SendState(2, 2); }, "A1_14 port 2 state 5"},
        {"expect A1_14 port 2 state 1 within 1s",
         [&] {
             SendState(2, 1);
             SendState(1, 2);
         },
         "A1_14 port 2 state 3"},
        {"expect A1_14 port 2 within 1s", nothing, "no message"},
        {"expect no A1_14 port 2 within 1s", [&] { SendState(2, 3); }, "A1_14 port 2"},
        {"expect A1_11 faultA 1 address 20 value 1 within 1s", changes, ""},
        {"expect A1_11 faultA 1 address 21 value 1 within 1s", changes,
         "A1_11 port=2 equipment=4445464748495051 faultA=1 faultB=0 [20=1 21=0]"},
        {"expect A1_6 port 2 connFlag 1 workFlag 0003 outputV 75.5 within 1s",
         [&] { document(R"({"portNo":2,"connFlag":1,"workFlag":"0003","outputV":75.5})"); }, ""},
        {"expect A1_16 port 1 within 1s", [&] { post(kCodeA1_16, {}); }, "A1_16 port -"},
        {"expect soe \"Door 0 -> 1\" point 5 value 1 within 1s", [&] { Record("[Fault]Door 0 -> 1", 5, 1); },
         ""},
        {"expect soe \"Door\" point 6 within 1s", [&] { Record("[Fault]Door 0 -> 1", 5, 1); },
         "\"[Fault]Door 0 -> 1\" point 5 value 1 table 0"},
        {"expect no soe \"Door\" within 1s", [&] { Record("[Fault]Lid 0 -> 1", 5, 1); }, ""},
    };
    for (const auto& item : kCases) {
        err.clear();
        Start("say before\n1s " + std::string(item.line));
        EXPECT_TRUE(At(0));
        item.what();  // before the line it does not count
        Record("[Fault]Door 0 -> 1", 5, 1);
        runtime.Port(1).lastStateCode = runtime.Port(2).lastStateCode = 0;
        EXPECT_TRUE(At(1));
        item.what();
        runtime.Port(1).lastStateCode = runtime.Port(2).lastStateCode = 0;
        At(1.5);
        EXPECT_FALSE(At(2));
        const std::string said = *item.outcome == '\0' ? ""
                                                       : std::string("zorctl: t:2: ") + item.line +
                                                             ": failed; came: " + item.outcome + '\n';
        EXPECT_EQ(said, err);
        EXPECT_EQ(said.empty() ? 0 : 1, player->Failures()) << item.line;
    }
}

TEST_F(Player, CommandsAsZorMainSendsThem) {
    const struct {
        const char* line;
        const char* frame;
    } kCases[] = {
        {"settings on snapshot 10s work 5s long 2h",
         "12 00 85 26 e8 03 05 00 b4 00 05 00 b4 00 0a 00 00 00 78 00"},
        {"history 2 2024-12-31", "08 00 85 2c 02 31 12 24 20 18"},
        {"history 0 today 9", "08 00 85 2c 00 05 03 24 20 09"},
        {"ack 1 yesterday ok", "0b 00 85 2f 01 00 00 00 04 03 24 20 00"},
        {"ack 8 1999-01-02 reject", "0b 00 85 2f 08 00 00 00 02 01 99 19 01"},
    };
    for (const auto& item : kCases) {
        Start(item.line);
        EXPECT_FALSE(At(0));
        SysVMessage message{};
        EXPECT_EQ(2052,
                  msgrcv(msgget(kQueueKey, 0), &message, sizeof message.text, kTypeFromMain, IPC_NOWAIT));
        EXPECT_EQ(item.frame, ToHex(message.Frame(), SplitFrame(message.Frame(), kFrameCapacity).count + 2U));
    }
    LimitQueue(kMessageTextSize);
    Start("settings off\nsettings off");
    EXPECT_FALSE(At(0));
    EXPECT_EQ(1, player->Failures());
    EXPECT_EQ("zorctl: queue 0x1234: full\nzorctl: t:2: settings off: the command could not be sent\n", err);
}

TEST_F(Player, WhatIsShown) {
    Start("say hello\nyx 8192 on\nexpect A1_14 port 2 state 3 within 1s\nexpect soe \"Door\" within 1s", 1.0,
          EPlayOutput::Json);
    EXPECT_TRUE(At(0));
    SendState(2, 1);
    Record("Lid", 5, 1);
    EXPECT_TRUE(At(0.5));
    EXPECT_FALSE(At(1));
    for (const char* part :
         {R"({"time":"2024-03-05T09:45:00.000","line":1,"action":"say hello"})",
          R"({"time":"2024-03-05T09:45:00.500","message":"A1_14",)",
          R"("event":"Lid","point":5,"value":1,"table":0})",
          R"("line":3,"expectation":"expect A1_14 port 2 state 3 within 1s","met":true,"after":0.5})",
          R"("met":false,"came":"\"Lid\" point 5 value 1 table 0"})"})
        EXPECT_THAT(out, HasSubstr(part));
    EXPECT_THAT(err, HasSubstr("zorctl: t:2: yx 8192 on: the shared memory has no such entry\n"));
}

// A reader must not stand in the way of the process, nor the other way round.
TEST_F(Player, EventsOfALockedOrLateFileComeLater) {
    Record("Lid", 5, 1);
    EXPECT_TRUE(events.Take().empty());  // they were there before
    Record("Door", 6, 1);
    {
        const CForeignLock writer(AppFile(kEventFile), CForeignLock::kWriter);
        EXPECT_TRUE(events.Take().empty());
    }
    const std::vector<EventRow> rows = events.Take();
    ASSERT_EQ(1U, rows.size());
    EXPECT_EQ("Door", rows[0].text);
    const CForeignLock writer(AppFile(kEventFile), CForeignLock::kWriter);  // nothing is left of the reader
    CEventReader early("/mnt/nandflash/app/late.db");
    EXPECT_TRUE(early.Take().empty());
    RunSql("/mnt/nandflash/app/late.db",
           std::string(kCreateSoe) + ";INSERT INTO tagSOE(event) VALUES('Lid')");
    EXPECT_EQ(1U, early.Take().size());
}

TEST_F(Player, ThePlayEndsWithWhatCameOfIt) {
    WriteText("/mnt/nandflash/s.zor", "yx 5 on\nexpect no A1_14 within 0s");
    EXPECT_EQ(0, Call("play /mnt/nandflash/s.zor").exit);
    WriteText("/mnt/nandflash/s.zor", "expect A1_14 within 0s");
    const Outcome failed = Call("play /mnt/nandflash/s.zor --loop --quiet");
    EXPECT_EQ(1, failed.exit);
    EXPECT_EQ(
        "zorctl: /mnt/nandflash/s.zor:1: expect A1_14 within 0s: failed; came: no message\n"
        "zorctl: /mnt/nandflash/s.zor: 1 failed\n",
        failed.err);
}

}  // namespace
