// A process without its System V queue, and the in-process queue in front of that.
#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using MessageChannel = CStationTest;

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
