// zorctl as a command line: what it prints, does and ends with.
#include "tools/zorctl/Commands.h"

#include <sys/msg.h>
#include <sys/shm.h>

#include <filesystem>
#include <regex>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"
#include "ipc/SettingsCommand.h"
#include "points/PortNumbering.h"
#include "reports/Messages.h"
#include "tests/support/CallZorctl.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

const std::string kDirectory = kAppDirectory;
using Zorctl = CEmptyStationTest;

TEST_F(Zorctl, ExitCodes) {
    const struct {
        const char* line;
        int exit;
    } kCases[] = {
        {"--help", 0},
        {"main listen --help", 0},
        {"--version", 0},
        {"", 2},
        {"main", 2},
        {"set", 2},
        {"set yx 5", 2},
        {"set yx 5 256", 2},
        {"set yx 5 1 --port 9", 2},
        {"set yx -1 1", 2},
        {"set yc 5", 2},
        {"set yc 5 --text a --hex 61", 2},
        {"set yc 5 --raw 4294967296", 2},
        {"set yc 5 --hex 616", 2},
        {"set equipment 44454647484950", 2},
        {"init /mnt/nandflash/app --ports 0", 2},
        {"init /mnt/nandflash/app --ports 9", 2},
        {"export", 2},
        {"export /mnt/nandflash/app", 2},
        {"export /mnt/nandflash/app --yx --yc", 2},
        {"main settings --on --off", 2},
        {"main settings --work 65536", 2},
        {"main listen --count 0", 2},
        {"play", 2},
        {"play x --speed 0", 2},
        {"play x --quiet --json", 2},
        {"play /nowhere", 1},
        {"init /proc/here --ports 1", 1},
        {"export /mnt/nandflash/app --yx", 1},
        {"set yx 8192 1", 1},
        {"get dd 256", 1},
        {"main history 1 2023-8-30", 2},
        {"main history 1 2023-13-30", 2},
        {"main history 1 2023-08-32", 2},
        {"main history 1 2023/08/30", 2},
        {"main history 1 2023-08-30 25", 2},
        {"main history 256 2023-08-30", 2},
        {"main ack 1 2023-08-30", 2},
        {"main ack 1 2023-08-30 yes", 2},
        {"main ack 1 2023-08-30 ok", 1},  // no queue
        {"main history 1 2023-08-30 --seconds 0", 1},
        {"main settings", 1},            // no queue
        {"main listen --seconds 0", 1},  // no queue
    };
    for (const auto& item : kCases) {
        const Outcome outcome = Call(item.line);
        EXPECT_EQ(item.exit, outcome.exit) << item.line;
        EXPECT_EQ(item.exit == 0, outcome.err.empty()) << item.line << '\n' << outcome.err;
    }
    EXPECT_LT(msgget(kQueueKey, 0), 0) << "the queue is the process's to create";
}

TEST_F(Zorctl, InitGivesWhatTheProcessReads) {
    for (int ports = 1; ports <= kMaxPorts; ++ports) {
        EXPECT_EQ(0, Call("init --force --ports " + std::to_string(ports) + ' ' + kDirectory).exit);
        int found = 0;
        Capture([&] { found = CTestRuntime().GetPort(AppFile(kConfigFile)); });
        EXPECT_EQ(ports, found);
    }
}

TEST_F(Zorctl, InitPointSettings) {
    const std::string path = AppFile(kPointSettingFile);
    const auto first = [&path](const std::string& sql) {
        const std::vector<std::string> rows = QueryRows(path, sql);
        return rows.empty() ? "" : rows[0];
    };
    ASSERT_EQ(0, Call("init --ports 3 " + kDirectory).exit);
    EXPECT_EQ("9|Gun connected|3|134|true|135|0", first("SELECT * FROM tagPS_YX_DC WHERE point = 134"));
    EXPECT_EQ("22|Power module fault|5|1|true|1026|1", first("SELECT * FROM tagPS_YX_DC WHERE source = 1"));
    EXPECT_EQ("105|Highest battery temperature|105|0|100|10.0|1000.0|0.0|0.0",
              first("SELECT * FROM tagPS_YC_DC WHERE point = 105"));
    // The row that opens the group gets no copies, so it is one that needs none; and all rows share its
    // group.
    EXPECT_EQ("1", first("SELECT point < 100 FROM tagPS_YC_DC LIMIT 1"));
    EXPECT_EQ("1", first("SELECT count(DISTINCT groupbase / 50) FROM tagPS_YC_DC"));
    // Copies reach port 2 and pass port 3 by.
    EXPECT_EQ("0|1", first("SELECT sum(point = 103 + 128), sum(point = 103 + 256) FROM tagPS_YC_DC"));
    EXPECT_EQ("0|0", first("SELECT (SELECT count(*) FROM tagPS_YX_AC), count(*) FROM tagPS_YC_AC"));
}

TEST_F(Zorctl, InitReplacesOnlyWhenForced) {
    WriteText(AppFile(kPointSettingFile), "mine");
    const Outcome refused = Call("init --ports 1 " + kDirectory);
    EXPECT_EQ(1, refused.exit);
    EXPECT_EQ("zorctl: /mnt/nandflash/app/zorpointsetting.db is there already; --force replaces it\n",
              refused.err);
    EXPECT_FALSE(std::filesystem::exists(AppFile(kConfigFile)));
    EXPECT_EQ(4U, std::filesystem::file_size(AppFile(kPointSettingFile)));
    // A folder in the way cannot be replaced, and no draft stays behind.
    std::filesystem::create_directories(AppFile(kConfigFile) + "/x");
    EXPECT_EQ(1, Call("init --force --ports 1 " + kDirectory).exit);
    EXPECT_FALSE(std::filesystem::exists(AppFile(kConfigFile) + ".new"));
}

TEST_F(Zorctl, GetCreatesNothing) {
    for (const char* line : {"yx 1", "yx2 1", "yc 1", "dd 1", "gun 1", "equipment"}) {
        EXPECT_EQ(1, Call(std::string("get ") + line).exit) << line;
        EXPECT_LT(shmget(CShmLayout::kKey, 0, 0), 0) << line;
    }
}

TEST_F(Zorctl, SetIsWhatGetPrints) {
    const struct {
        const char* set;
        const char* get;
        const char* printed;
    } kCases[] = {
        {"yx 99 7", "yx 99", "7"},
        {"yx 99 3 --port 2", "yx 227", "3"},
        {"yx 98 1 --port 1", "yx 98", "1"},
        {"yx2 99 5", "yx2 99", "5"},
        {"dd 255 18446744073709551615", "dd 255", "18446744073709551615"},
        {"gun 8 255", "gun 8", "255"},
        {"gun 0 2", "gun 1", "2"},
        {"equipment 5a4F522d30303031", "equipment", "5a4f522d30303031"},
        {"yc 8 --raw -10", "yc 8 --raw", "4294967286"},
        {"yc 8 --port 3 --raw 4294967295", "yc 264 --raw", "4294967295"},
        {"yc 9 --coefficient 0.5", "yc 9 --coefficient", "0.5"},
        {"yc 9 --raw 4", "yc 9 --coefficient", "0.5"},
        {"yc 10 --raw 4", "yc 10 --coefficient", "1"},  // nobody had written it
        {"yc 11 --text LONG", "yc 11 --text", "LONG"},
        {"yc 11 --hex 411b42", "yc 11 --text", "A.B"},
        {"yc 12 --hex 01", "yc 12 --hex",
         "01000000000000000000000000000000000000000000000000000000000000000000000000000000"},
    };
    for (const auto& item : kCases) {
        EXPECT_EQ(0, Call(std::string("set ") + item.set).exit) << item.set;
        const Outcome got = Call(std::string("get ") + item.get);
        EXPECT_EQ(0, got.exit) << item.get;
        EXPECT_EQ(item.printed + std::string("\n"), got.out) << item.set;
    }
    // The process reads the same places, and neighbours stayed as they were.
    CShmCTRL live;
    EXPECT_EQ(7, live.Signal(99));
    EXPECT_EQ(0, live.Signal(100));
    EXPECT_EQ(2, live.GunState(0));
    EXPECT_EQ(0, live.GunState(7));
    EXPECT_EQ(0x5A, live.EquipmentNumber()[0]);
    EXPECT_EQ("raw=4 coefficient=0.5 text=\"\" hex=" + std::string(80, '0') + '\n', Call("get yc 9").out);
}

using ZorctlStation = CStationTest;

TEST_F(ZorctlStation, SettingsReachTheProcess) {
    const auto sent = [](const std::string& options) {
        EXPECT_EQ(0, Call("main settings " + options).exit) << options;
        SysVMessage message{};
        EXPECT_EQ(2052,
                  msgrcv(msgget(kQueueKey, 0), &message, sizeof message.text, kTypeFromMain, IPC_NOWAIT));
        return ToHex(message.Frame(), kSettingsFrameLength + 2);
    };
    EXPECT_EQ("12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00 00 00", sent(""));
    EXPECT_EQ("12 00 85 26 00 00 01 02 07 00 01 02 07 00 ff ff 00 00 5a 00 00 00",
              sent("--off --work 513 --idle 7 --snapshot 65535 --long 90"));

    EXPECT_EQ(0, Call("main settings --work 60 --idle 20 --snapshot 30 --long 120").exit);
    Capture([&] { runtime.MsgRcvFromMain(); });
    EXPECT_EQ(1, runtime.m_sendflag);
    EXPECT_EQ(600U, runtime.m_workReportTicks);
    EXPECT_EQ(200U, runtime.m_idleReportTicks);
    EXPECT_EQ(300U, runtime.m_yxReportTicks);
    EXPECT_EQ(72000U, runtime.m_minuteIntervalTicks);

    LimitQueue(kMessageTextSize);
    EXPECT_EQ(0, Call("main settings").exit);
    const Outcome full = Call("main settings --wait 0.02");
    EXPECT_EQ(1, full.exit);
    EXPECT_EQ("zorctl: queue 0x1234: full\n", full.err);
}

TEST_F(ZorctlStation, ListenTakesWhatTheProcessSends) {
    const auto untimed = [](const std::string& lines) {
        return std::regex_replace(lines, std::regex("(^|\n)[0-9:]{8}\\.[0-9]{3} "), "$1");
    };
    live.SetGunState(2, 1);
    runtime.m_sendflag = 1;
    Capture([&] {
        for (const int port : {1, 2}) runtime.Send_DC_A1_14(port);
    });
    runtime.PostMsg(kCodeA1_9, "\x01\x02", 2);
    SendFrame(SettingsFrame());  // the other direction stays where it is
    Drain(3);

    const Outcome one = Call("main listen --count 1 --seconds 1");
    EXPECT_EQ(0, one.exit);
    EXPECT_EQ("A1_14 port=1 equipment=4445464748495051 state=2\n", untimed(one.out));
    const Outcome tooFew = Call("main listen --count 3 --seconds 0");
    EXPECT_EQ(1, tooFew.exit);
    EXPECT_EQ("A1_14 port=2 equipment=4445464748495051 state=3\nA1_9 body[2]=01 02\n", untimed(tooFew.out));
    EXPECT_EQ("zorctl: 2 of 3 messages came\n", tooFew.err);
    EXPECT_EQ(0, Call("main listen --seconds 0.05").exit);
    EXPECT_EQ(1UL, Waiting());
}

using ZorctlHistory = CHistoryTest;

TEST_F(ZorctlHistory, CommandsReachTheProcess) {
    const struct {
        const char* line;
        const char* frame;
    } kCases[] = {
        {"history 2 2023-08-30 10 --seconds 0.01", "08 00 85 2c 02 30 08 23 20 0a 00 00"},
        {"history 0 2023-08-30 08 --seconds 0.01", "08 00 85 2c 00 30 08 23 20 08 00 00"},
        {"history 1 2023-08-30 00 --seconds 0.01", "08 00 85 2c 01 30 08 23 20 00 00 00"},
        {"history 255 1999-12-31 --seconds 0.01", "08 00 85 2c ff 31 12 99 19 18 00 00"},
        {"ack 0 2023-08-30 ok", "0b 00 85 2f 00 00 00 00 30 08 23 20 00 00 00"},
        {"ack 8 2023-08-30 reject", "0b 00 85 2f 08 00 00 00 30 08 23 20 01 00 00"},
    };
    for (const auto& item : kCases) {
        const Outcome outcome = Call(std::string("main ") + item.line);
        EXPECT_EQ(*item.line == 'a' ? "" : "zorctl: no answer came\n", outcome.err);
        SysVMessage message{};
        ASSERT_EQ(2052,
                  msgrcv(msgget(kQueueKey, 0), &message, sizeof message.text, kTypeFromMain, IPC_NOWAIT));
        EXPECT_EQ(item.frame, ToHex(message.Frame(), Hex(item.frame).size()));
    }
    AddRow(2, "2023-08-30 00:00:03", 1);
    EXPECT_EQ(0, Call("main ack 2 2023-08-30 ok").exit);
    Capture([this] { runtime.MsgRcvFromMain(); });
    EXPECT_EQ(std::vector<std::string>{"0"}, Rows("sendcount"));
}

TEST_F(ZorctlHistory, AnswersAreToldFromOtherMessages) {
    AddRow(2, "2023-08-30 00:00:03");
    AddRow(2, "2023-08-30 01:00:03");
    AddRow(2, "2023-08-31 00:00:03", 1);
    runtime.m_sendflag = 1;
    // The process answers a request that came before; the next one finds its answers waiting.
    const auto ask = [this](const std::string& request) {
        const std::string line = "main history " + request + " --seconds ";
        Call(line + "0");
        Capture([this] {
            runtime.Checkcache();
            for (const std::uint32_t port : {1U, 2U}) runtime.Send_A1_16(port);
            runtime.PostMsg(kCodeA1_9, "\x01", 1);
            runtime.History_A1_16();  // resends a record of another day
            runtime.MsgRcvFromMain();
        });
        Drain(7);
        const Outcome outcome = Call(line + "0.05");
        EXPECT_EQ("zorctl: 4 other messages taken and not shown\n", outcome.err);
        EXPECT_EQ(0, outcome.exit);
        Capture([this] { runtime.MsgRcvFromMain(); });
        Posted();
        return std::regex_replace(
            outcome.out, std::regex("[0-9:.]{12} (A1_16 \\S+)[^\n]* (time=\\d+|body)[^\n]*"), "$1 $2");
    };
    EXPECT_EQ("A1_16 port=2 time=20230830000003\nA1_16 port=2 time=20230830010003\n", ask("2 2023-08-30"));
    EXPECT_EQ("A1_16 port=2 time=20230830010003\n", ask("2 2023-08-30 12"));
    EXPECT_THAT(ask("2 2023-08-29"), testing::EndsWith(" A1_16 body[0]=\n"));
    EXPECT_THAT(ask("2 2023-08-30 1 --json"), testing::HasSubstr(R"("time":"20230830010003","status":1)"));
}

TEST_F(ZorctlStation, PlayEndsWithWhatCameOfIt) {
    const std::string file = std::string(kScratchDirectory) + "s.zor";
    const auto play = [&file](const std::string& text, const std::string& options = "") {
        WriteText(file, text);
        return Call("play " + file + ' ' + options);
    };
    EXPECT_EQ(0, play("yx 5 on\nexpect no A1_14 within 0s").exit);
    EXPECT_EQ(1, live.Signal(5));
    const Outcome failed = play("expect A1_14 within 0s", "--loop --quiet");
    EXPECT_EQ(1, failed.exit);
    EXPECT_EQ("", failed.out);
    EXPECT_EQ("zorctl: " + file + ":1: expect A1_14 within 0s: failed; came: no message\nzorctl: " + file +
                  ": 1 failed\n",
              failed.err);
    const Outcome wrong = play("yx 6 on\njump\nport 9 plug");
    EXPECT_EQ(2, wrong.exit);
    EXPECT_EQ("zorctl: " + file + ":2:1: expected an action, found \"jump\"\nzorctl: " + file +
                  ":3:6: expected a port from 0 to 8, found \"9\"\n",
              wrong.err);
    EXPECT_EQ(0, play("yx 6 on", "--check").exit);
    EXPECT_EQ(0, live.Signal(6)) << "nothing of these is played";
}

}  // namespace
