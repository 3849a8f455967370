// What is posted on its way into the System V queue, and the in-process queue in front of that.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

class CMessageChannel : public CStationTest {
  protected:
    void Post(std::uint32_t code, std::uint32_t length = 0) {
        runtime.PostMsg(code, Bytes(length, 'x').data(), length);
    }
    // What drains so many times send: the size of each frame and its beginning.
    std::vector<std::string> Sent(int drains) {
        Drain(drains);
        std::vector<std::string> sent;
        for (const Received& message : ReadAll()) {
            EXPECT_EQ(getpid(), message.sender);
            sent.push_back(std::to_string(message.frame.size()) + ": " +
                           ToHex(message.frame.data(), std::min<std::size_t>(message.frame.size(), 7)));
        }
        return sent;
    }
};
using MessageChannel = CMessageChannel;
using testing::ElementsAre;

TEST_F(MessageChannel, OneFrameADrainInTheOrderOfPosting) {
    Post(34518);
    Post(4294938, 300);  // of a code, the low 16 bits
    Post(1, 2042);
    EXPECT_THAT(Sent(2), ElementsAre("6: 04 00 86 d6 00 00", "306: 30 01 89 1a 00 00 78"));
    EXPECT_THAT(Sent(2), ElementsAre("2048: fe 07 00 01 00 00 78"));
}

TEST_F(MessageChannel, BodyTooLongIsRefusedAndToldOnceAnHour) {
    const std::string kRefused =
        "zor_runtime: message 34518 not sent: body of 2043 bytes, at most 2042 fit\n";
    const auto post = [this] { Post(34518, 2043); };
    // At last the clock is set back.
    for (const char* time :
         {"2024-03-05 09:45:00", "2024-03-05 10:44:59", "2024-03-05 10:45:00", "2024-03-05 09:00:00"}) {
        SetClock(time);
        Printed(post);
        EXPECT_EQ(time[12] == '0' && time[18] == '9' ? "" : kRefused, errors) << time;
    }
    Printed([this] { runtime.m_failures.Report(EFailure::NoMemory, "%d", 7); });
    EXPECT_EQ("zor_runtime: 7\n", errors);  // another kind of failure
    EXPECT_THAT(Sent(5), ElementsAre());
}

TEST_F(MessageChannel, OneCodePausesTheDrain) {
    for (const std::uint32_t code : {34512U, 34514U, 34513U}) Post(code);
    Drain(2);
    EXPECT_EQ(0, FakeClock::Slept());
    Drain(1);
    EXPECT_EQ(35000, FakeClock::Slept());
}

TEST_F(MessageChannel, WhatDoesNotGoOutIsLost) {
    LimitQueue(16384);
    for (int i = 0; i < 10; ++i) Post(34518);
    EXPECT_EQ("", Printed([this] { Drain(7); }));
    EXPECT_EQ("MsgSndToMain: send failed 002!\nMsgSndToMain: send failed 002!\n",
              Printed([this] { Drain(2); }));
    EXPECT_EQ(7U, ReadAll().size());
    FailNextQueueCall(EINTR);
    EXPECT_EQ("MsgSndToMain: sned failed!\n", Printed([this] { Drain(1); }));
    EXPECT_THAT(Sent(1), ElementsAre());
}

TEST_F(MessageChannel, WithoutAQueueEverythingIsDropped) {
    FailNextQueueCall(ENOSPC);
    std::unique_ptr<CTestRuntime> deaf;
    EXPECT_EQ("", Printed([&] { deaf = std::make_unique<CTestRuntime>(); }));
    EXPECT_EQ("open msg 1234 failed.\n", errors);
    EXPECT_EQ("", Printed([&] {
                  deaf->PostMsg(34518, "x", 1);
                  deaf->DrainOutbound();
                  for (int i = 0; i < 2; ++i) deaf->MsgRcvFromMain();
              }));
    EXPECT_THAT(errors, testing::MatchesRegex("zor_runtime: cannot read from queue 0x1234: [^\n]*\n"));
    EXPECT_EQ(1900U, deaf->TickPeriodMs() + deaf->m_workReportTicks);
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
