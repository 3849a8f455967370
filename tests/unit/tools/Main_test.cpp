// zorctl main: what the process gets from it, and what it shows of the process.
#include <gmock/gmock.h>
#include <sys/msg.h>

#include <regex>

#include "System/AppFiles.h"
#include "reports/Messages.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"
#include "tools/zorctl/Commands.h"

namespace {

using ZorctlStation = CStationTest;

TEST_F(ZorctlStation, WhatTheProcessGets) {
    const struct {
        const char* line;
        const char* frame;
        long type = kTypeFromMain;
        ssize_t size = 2052;
    } kCases[] = {
        {"settings", "12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00 00 00"},
        {"settings --off --work 513 --idle 7 --snapshot 65535 --long 90",
         "12 00 85 26 00 00 01 02 07 00 01 02 07 00 ff ff 00 00 5a 00 00 00"},
        {"history 0 2023-08-30 08 --seconds 0.01", "08 00 85 2c 00 30 08 23 20 08 00 00"},
        {"history 255 1999-12-31 --seconds 0.01", "08 00 85 2c ff 31 12 99 19 18 00 00"},
        {"ack 8 2023-08-30 reject", "0b 00 85 2f 08 00 00 00 30 08 23 20 01 00 00"},
        {"ack 0 2023-08-30 ok", "0b 00 85 2f 00 00 00 00 30 08 23 20 00 00 00"},
        {"send 0102 03", "01 02 03 00"},
        {"send --code 0x8526 --data \"e8 03\" --type 7 --size 20", "04 00 85 26 e8 03 00", 7, 20},
        {"send --code 34086 --claim 65535", "ff ff 85 26 00"},
        {"send --text 010200000a0b", "0a 0b 00", kTypeFromMain, 6},
        {"send --text 01", "00", kTypeFromMain, 1},
    };
    for (const auto& item : kCases) {
        Call(std::string("main ") + item.line);
        SysVMessage message{};
        EXPECT_EQ(item.size,
                  msgrcv(msgget(kQueueKey, 0), &message, sizeof message.text, item.type, IPC_NOWAIT))
            << item.line;
        EXPECT_EQ(item.frame, ToHex(message.Frame(), Hex(item.frame).size())) << item.line;
    }
    LimitQueue(kMessageTextSize);
    EXPECT_EQ(0, Call("main settings").exit);
    EXPECT_EQ("zorctl: queue 0x1234: full\n", Call("main settings --wait 0.02").err);
}

TEST_F(ZorctlStation, ListenShowsWhatTheProcessSends) {
    const auto fill = [this] {
        Call("main listen --seconds 0");
        runtime.m_sendflag = 1;
        for (const int port : {1, 2}) {
            runtime.Port(port).lastStateCode = 0;
            Capture([&] { runtime.Send_DC_A1_14(port); });
        }
        runtime.PostMsg(kCodeA1_9, "\x01\x02", 2);
        Drain(3);
    };
    const std::string one = "A1_14 port=1 equipment=4445464748495051 state=2\n";
    const std::string two = "A1_14 port=2 equipment=4445464748495051 state=2\n";
    const std::string hex = "16 00 86 d6 00 00 51 50 49 48 47 46 45 44 0";
    SendFrame(SettingsFrame());  // the other direction stays where it is
    const struct {
        const char* options;
        std::string out;
        unsigned long left;
        const char* err;
    } kCases[] = {
        {"--peek --seconds 0", one + two + "A1_9 body[2]=01 02\n", 4, ""},
        {"--peek --idle 0.02 --message A1_14 --port 2", two, 4, ""},
        {"--count 1 --seconds 1", one, 3, ""},
        {"--count 4 --idle 0", one + two + "A1_9 body[2]=01 02\n", 1, "zorctl: 3 of 4 messages came\n"},
        {"--port 1 --port 2 --message 34518 --seconds 0", one + two, 1,
         "zorctl: 1 other messages taken and not shown\n"},
        {"--hex --port 1 --count 1", hex + "1 01 00 e8 03 00 02 00 00 01\n", 3, ""},
        {"--hex --message A1_9 --seconds 0", "06 00 86 d1 00 00 01 02\n", 1,
         "zorctl: 2 other messages taken and not shown\n"},
    };
    for (const auto& item : kCases) {
        fill();
        const Outcome outcome = Call(std::string("main listen --time none ") + item.options);
        EXPECT_EQ(item.out, outcome.out) << item.options;
        EXPECT_EQ(item.err, outcome.err) << item.options;
        EXPECT_EQ(item.left, Waiting()) << item.options;
    }
    fill();
    EXPECT_THAT(Call("main listen --count 2 --time delta").out,
                testing::MatchesRegex("\\+0.000 A1.*\n\\+0.00. A1.*\n"));
}

TEST_F(ZorctlStation, AnswersAreToldFromOtherMessages) {
    Capture([this] { runtime.InitYcHistoryDatabase(); });
    for (const char* time : {"2,0,'2023-08-30 00", "2,0,'2023-08-30 01", "2,1,'2023-08-31 00"})
        RunSql(AppFile(kHistoryFile),
               "INSERT INTO tagYC(portNo,sendcount,timestamp) VALUES(" + std::string(time) + ":00:03')");
    runtime.m_sendflag = 1;
    // The process answers a request that came before; the next one finds its answers waiting.
    const auto ask = [this](const std::string& request) {
        const std::string line = "main history " + request + " --time none --seconds ";
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
        Capture([this] { runtime.MsgRcvFromMain(); });
        Drain(7);
        Call("main listen --seconds 0");
        return std::regex_replace(outcome.out, std::regex("(A1_16 \\S+)[^\n]* (time=\\d+|body)[^\n]*"),
                                  "$1 $2");
    };
    EXPECT_EQ("A1_16 port=2 time=20230830000003\nA1_16 port=2 time=20230830010003\n", ask("2 2023-08-30"));
    EXPECT_EQ("A1_16 port=2 time=20230830010003\n", ask("2 2023-08-30 12"));
    EXPECT_EQ("A1_16 body[0]=\n", ask("2 2023-08-29"));
}

}  // namespace
