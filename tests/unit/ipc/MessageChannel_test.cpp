// The System V queue from both ends, and the in-process queue in front of it.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <thread>

#include "ipc/Frame.h"
#include "ipc/SettingsCommand.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using MessageChannel = CStationTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kCode = 34518;

TEST_F(MessageChannel, FramesOfEverySizeInPostingOrder) {
    Bytes body(2043);
    for (std::size_t i = 0; i < body.size(); ++i) body[i] = static_cast<std::uint8_t>(i + 1);
    runtime.PostMsg(kCode, nullptr, 0);
    runtime.PostMsg(0xABC00000 | kCode, body.data(), 300);  // only the low 16 bits of a code are sent
    runtime.PostMsg(1, body.data(), 2042);
    EXPECT_EQ("", Printed([&] {
                  for (const std::uint32_t length : {2043U, UINT32_MAX})
                      runtime.PostMsg(kCode, body.data(), length);
              }));
    EXPECT_EQ("zor_runtime: message 34518 not sent: body of 2043 bytes, at most 2042 fit\n", errors);
    for (const std::string& frame :
         {std::string("04 00 86 d6 00 00"), "30 01 86 d6 00 00 " + ToHex(body.data(), 300),
          "fe 07 00 01 00 00 " + ToHex(body.data(), 2042)}) {
        runtime.DrainOutbound();
        const std::vector<Received> sent = ReadAll();
        ASSERT_EQ(1U, sent.size());
        EXPECT_EQ(getpid(), sent[0].sender);
        EXPECT_EQ(frame, ToHex(sent[0].frame));
    }
    Drain(1);
    EXPECT_EQ(0U, Waiting());
}

TEST_F(MessageChannel, OnlyOneCodePausesTheDrain) {
    for (const std::uint32_t code : {34512U, 34513U, 34514U}) runtime.PostMsg(code, nullptr, 0);
    Drain(1);
    EXPECT_THAT(FakeClock::Sleeps(), IsEmpty());
    Drain(2);
    EXPECT_THAT(FakeClock::Sleeps(), ElementsAre(35000));
}

TEST_F(MessageChannel, LostMessages) {
    LimitQueue(16384);
    for (int i = 0; i < 10; ++i) runtime.PostMsg(kCode, nullptr, 0);
    EXPECT_EQ("", Printed([&] { Drain(7); }));
    EXPECT_EQ(Lines("MsgSndToMain", {"send failed 002!", "send failed 002!"}), Printed([&] { Drain(2); }));
    EXPECT_EQ(7U, ReadAll().size());
    FailNextQueueCall(EINTR);
    EXPECT_EQ(Line("MsgSndToMain", "sned failed!"), Printed([&] { Drain(1); }));
    Drain(1);
    EXPECT_EQ(0U, Waiting());
}

TEST_F(MessageChannel, WithoutAQueueEverythingIsDropped) {
    FailNextQueueCall(ENOSPC);
    std::unique_ptr<CTestRuntime> deaf;
    EXPECT_EQ("", Printed([&] { deaf = std::make_unique<CTestRuntime>(); }));
    EXPECT_EQ("open msg 1234 failed.\n", errors);
    EXPECT_EQ("", Printed([&] {
                  deaf->PostMsg(kCode, "x", 1);
                  deaf->DrainOutbound();
                  for (int i = 0; i < 2; ++i) deaf->MsgRcvFromMain();
              }));
    EXPECT_THAT(errors, testing::MatchesRegex("zor_runtime: cannot read from queue 0x1234: [^\n]*\n"));
    EXPECT_EQ(1900U, deaf->TickPeriodMs() + deaf->m_workReportTicks);
}

TEST_F(MessageChannel, OneCommandPerPoll) {
    SendFrame(SettingsFrame());
    SendFrame(SettingsFrame({999}));
    const auto poll = [this] { return Printed([this] { runtime.MsgRcvFromMain(); }); };
    for (const auto& [result, flag] : {std::pair{2052, 1}, {2052, 0}, {-1, 0}}) {
        EXPECT_EQ(result < 0, poll().empty());
        EXPECT_EQ(flag, runtime.m_sendflag);
        EXPECT_EQ(result, runtime.m_lastReceiveResult);
    }
    FailNextQueueCall(EINTR);
    EXPECT_EQ(Line("MsgRcvFromMain", "rcv error!"), poll());
}

TEST_F(MessageChannel, AnyCommandIsSurvived) {
    constexpr std::uint16_t kCodes[] = {kCommandSettings, kCommandHistoryRequest, kCommandHistoryAck};
    std::mt19937 random(1);
    for (int i = 0; i < 10000; ++i) {
        Bytes text(random() % 2053);
        for (std::uint8_t& byte : text) byte = static_cast<std::uint8_t>(random());
        if (text.size() >= 8 && random() % 2 == 0) {  // half of them look like a command
            const std::uint16_t code = kCodes[random() % 3];
            text[5] = static_cast<std::uint8_t>(random() % 4);
            text[6] = static_cast<std::uint8_t>(code >> 8);
            text[7] = static_cast<std::uint8_t>(code);
        }
        ASSERT_TRUE(SendText(text));
        Printed([this] { runtime.MsgRcvFromMain(); });
    }
    EXPECT_EQ(0U, Waiting());
}

TEST(OutboundQueue, PopByCodeTakesTheOldestMatchAndCostsATokenWithoutOne) {
    int a = 0;
    int b = 0;
    int c = 0;
    CLinuxMsgQueue queue("test");
    const auto pop = [&](std::uint32_t filter) {
        std::uint32_t code = 77;  // what is left untouched
        void* buffer = nullptr;
        const int result = queue.PopByCode(filter, code, buffer);
        return std::tuple(result, code, static_cast<const int*>(buffer));
    };
    using Popped = std::tuple<int, std::uint32_t, const int*>;
    EXPECT_EQ(Popped(0, 77, nullptr), pop(1));
    EXPECT_EQ(3, queue.Push(2, &a) + queue.Push(0x50001, &b) + queue.Push(1, &c));
    EXPECT_EQ(Popped(1, 0x50001, &b), pop(1));
    EXPECT_EQ(Popped(1, 77, nullptr), pop(9));
    EXPECT_EQ(Popped(1, 2, &a), pop(CMsgQueue::kAnyCode));
    EXPECT_EQ(Popped(0, 77, nullptr), pop(1));  // an entry, but no token for it
    queue.Push(3, &a);
    EXPECT_EQ(Popped(1, 1, &c), pop(CMsgQueue::kAnyCode));
}

TEST(OutboundQueue, MutexAndSemaphore) {
    CLinuxMutex mutex("test");
    EXPECT_TRUE(mutex.Lock() && mutex.Lock());  // twice by its holder, and one unlock releases it
    const Captured foreign = Capture([&] { std::thread([&] { EXPECT_FALSE(mutex.Unlock()); }).join(); });
    EXPECT_EQ("CnlLinuxMutex::Unlock() :  Error - Mutex not locked or not owned by the thread! \n",
              foreign.out);
    EXPECT_TRUE(mutex.Unlock());
    std::thread([&] { EXPECT_TRUE(mutex.Lock() && mutex.Unlock()); }).join();

    CLinuxCountingSem sem(1);
    EXPECT_TRUE(sem.Wait(0, 5));  // there is no timed wait: the token stays where it is
    EXPECT_TRUE(sem.Wait(0, 0));
    EXPECT_FALSE(sem.Wait(0, 0));
    EXPECT_TRUE(sem.Wait(2, 1));  // only 1 blocks
    EXPECT_TRUE(sem.Post() && sem.Wait(1, 0));
}

}  // namespace
