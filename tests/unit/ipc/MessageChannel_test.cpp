// What is posted on its way into the System V queue, and what comes from there: report settings, and messages
// that are no command.
#include <unistd.h>

#include <cerrno>
#include <sstream>
#include <thread>

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using MessageChannel = CStationTest;

const Bytes kBody(2043, 'x');

TEST_F(MessageChannel, OneFrameADrainInTheOrderOfPosting) {
    runtime.PostMsg(34518, nullptr, 0);
    runtime.PostMsg(4294938, kBody.data(), 300);  // of a code, the low 16 bits
    runtime.PostMsg(1, kBody.data(), 2042);
    for (const char* frame : {"6: 04 00 86 d6 00 00", "306: 30 01 89 1a 00 00", "2048: fe 07 00 01 00 00"}) {
        Drain(1);
        const auto sent = ReadAll();
        ASSERT_EQ(1U, sent.size());
        EXPECT_EQ(getpid(), sent[0].sender);
        EXPECT_EQ(frame, std::to_string(sent[0].frame.size()) + ": " + ToHex(sent[0].frame.data(), 6));
    }
    EXPECT_EQ(0, FakeClock::Slept());
    runtime.PostMsg(34513, nullptr, 0);  // the one that makes it pause
    Drain(1);
    EXPECT_EQ(35000, FakeClock::Slept());
}

TEST_F(MessageChannel, BodyTooLongIsRefusedAndToldOnceAnHour) {
    const std::string kTold = "zor_runtime: message 34518 not sent: body of 2043 bytes, at most 2042 fit\n";
    for (const auto& [time, told] :
         {std::pair("09:45:00", kTold), {"10:44:59", ""}, {"10:45:00", kTold}, {"09:00:00", kTold}}) {
        SetClock(("2024-03-05 " + std::string(time)).c_str());
        Printed([this] { runtime.PostMsg(34518, kBody.data(), 2043); });
        EXPECT_EQ(told, errors) << time;
    }
    EXPECT_TRUE(Take().empty());
}

TEST_F(MessageChannel, CallsThatFail) {
    runtime.PostMsg(34518, nullptr, 0);
    FailNextQueueCall(EINTR);
    EXPECT_EQ("MsgSndToMain: sned failed!\n", Printed([this] { Drain(2); }));
    EXPECT_EQ(0U, Waiting());
    const auto receive = [this] { runtime.MsgRcvFromMain(); };
    EXPECT_EQ("", Printed(receive) + errors);  // an empty queue is no failure
    FailNextQueueCall(EINTR);
    EXPECT_EQ("MsgRcvFromMain: rcv error!\n", Printed(receive));
    FailNextQueueCall(ENOSPC);
    Printed([] { CTestRuntime().DrainOutbound(); });
    EXPECT_EQ("open msg 1234 failed.\n", errors);
}

// Each upon the one before: kind of charger; settings; what is printed, which is not what is applied;
// reporting, ticks of work, idle, snapshot and long interval, forced snapshot.
TEST_F(MessageChannel, Settings) {
    for (const auto& row : Table(R"(
1 | e8 03 05 00 07 00 3c 00 3d 00 3c 00 00 00 3c 00 | A1_5:60;A1_6:61;A1_13:60;m_sendflag:1 | 1 600 610 600 36000 1
1 | e8 03 03 00 03 00 04 00 02 00 09 00 00 00 1d 00 | A1_5:4;Set A1_6 Minvalues:3;A1_6:3;Set A1_12 or A1_13 Minvalues:10;A1_13:10;m_sendflag:1 | 1 50 50 100 18000 1
1 | e8 03 ff ff ff ff ff ff ff ff ff ff 00 00 ff ff | A1_5:65535;A1_6:65535;A1_13:65535;m_sendflag:1 | 1 655350 655350 655350 39321000 1
2 | e8 03 02 00 07 00 3c 00 3c 00 3c 00 00 00 1e 00 | Set A1_3 Minvalues:3;A1_3:3;A1_4:7;A1_12:60;m_sendflag:1 | 1 50 70 600 18000 1
0 | e8 03 09 00 09 00 09 00 09 00 0b 00 00 00 3c 00 | A1_13:11;m_sendflag:1 | 1 50 70 110 36000 1
1 | 03 e8 05 00 05 00 3c 00 3c 00 3c 00 00 00 3c 00 | m_sendflag:0          | 0 50 70 110 36000 0)")) {
        runtime.SetChargerKind(std::stoi(row[0]));
        const std::string texts = Texts(SaidTo("12 00 85 26 " + row[1]), "MsgRcvFromMain");
        EXPECT_EQ(row[2], texts.substr(texts.find("msg:34086;") + 10)) << row[1];
        std::ostringstream state;
        state << runtime.m_sendflag << ' ' << runtime.m_workReportTicks << ' ' << runtime.m_idleReportTicks
              << ' ' << runtime.m_yxReportTicks << ' ' << runtime.m_minuteIntervalTicks << ' '
              << std::exchange(runtime.m_forceYxReport, 0);
        EXPECT_EQ(row[3], state.str()) << row[1];
    }
}

// What follows a process id, bytes that are missing as zeros; what is printed, and what is called.
TEST_F(MessageChannel, CountsCodesAndLengths) {
    for (const auto& row : Table(R"(
ff 03 00 01       | ncount is error!
fe 03 00 01       | ncount:1022 | fe 03 00 01 00 00 | msg:1     | MsgRcvFromMain:
01 00 85 2c 01 02 | ncount:1    | 01 00 85          | msg:34092 | MsgCall_A1_16: Rcv:00-00-00-00
03 00 85 2f 01 02 | ncount:3    | 03 00 85 2f 01    | msg:34095 | DealCacheData: delete str:0000-00-00 00:
04 00 85 26 e8 03 | ncount:4    | 04 00 85 26 e8 03 | msg:34086 | MsgRcvFromMain: Set A1_4 Minvalues:3)")) {
        EXPECT_TRUE(SendText(Hex("01 00 00 00 " + row[0])));
        const std::string said = Printed([this] { runtime.MsgRcvFromMain(); });
        for (std::size_t i = 1; i < row.size(); ++i) EXPECT_THAT(said, testing::HasSubstr(row[i]));
    }
    EXPECT_THAT(SaidTo("06 00 00 01 26 07 01 02"),
                testing::HasSubstr("rev from zor_main data--------------------------------\n"
                                   "MsgRcvFromMain: ncount:6⏎\n06 00 00 01 26 07 01 02 \n"));
}

TEST(OutboundQueue, PopByCodeTakesTheOldestMatchAndCostsATokenWithoutOne) {
    int bodies[2] = {};
    CLinuxMsgQueue queue("test");
    std::uint32_t code = 0;
    void* buffer = nullptr;
    EXPECT_EQ(3, queue.Push(2, &bodies[0]) + queue.Push(0x50001, &bodies[1]) + queue.Push(1, &bodies[0]));
    EXPECT_TRUE(queue.PopByCode(1, code, buffer) == 1 && code == 0x50001 && buffer == &bodies[1]);
    EXPECT_TRUE(queue.PopByCode(9, code, buffer) == 1 && code == 0x50001);  // left untouched
    EXPECT_TRUE(queue.Pop(code, buffer) == 1 && code == 2 && buffer == &bodies[0]);
    EXPECT_EQ(0, queue.PopByCode(1, code, buffer));  // an entry, but no token for it
}

TEST(OutboundQueue, MutexIsLockedTwiceByItsHolderAndReleasedByOneUnlock) {
    CLinuxMutex mutex("test");
    EXPECT_TRUE(mutex.Lock() && mutex.Lock());
    std::thread([&] { EXPECT_FALSE(mutex.Unlock()); }).join();
    EXPECT_TRUE(mutex.Unlock());
    std::thread([&] { EXPECT_TRUE(mutex.Lock() && mutex.Unlock()); }).join();
}

}  // namespace
