// The in-process queue and its mutex and semaphore.
#include <gtest/gtest.h>

#include <thread>

#include "ipc/MsgQueue.h"
#include "tests/support/Bytes.h"

namespace {

struct Popped {
    int result;
    std::uint32_t code = 77;  // what is left untouched
    void* buffer = nullptr;
};

Popped PopByCode(CLinuxMsgQueue& queue, std::uint32_t filter) {
    Popped popped{};
    popped.result = queue.PopByCode(filter, popped.code, popped.buffer);
    return popped;
}

void Expect(const Popped& popped, int result, std::uint32_t code, const void* buffer) {
    EXPECT_EQ(result, popped.result);
    EXPECT_EQ(code, popped.code);
    EXPECT_EQ(buffer, popped.buffer);
}

TEST(OutboundQueue, PopByCodeTakesOldestMatchAndCostsATokenWithoutOne) {
    int a = 0;
    int b = 0;
    int c = 0;
    CLinuxMsgQueue queue("test");
    Expect(PopByCode(queue, 1), 0, 77, nullptr);
    EXPECT_EQ(1, queue.Push(2, &a));
    queue.Push(0x50001, &b);
    queue.Push(1, &c);
    Expect(PopByCode(queue, 1), 1, 0x50001, &b);
    Expect(PopByCode(queue, 9), 1, 77, nullptr);
    Expect(PopByCode(queue, CMsgQueue::kAnyCode), 1, 2, &a);
    Expect(PopByCode(queue, 1), 0, 77, nullptr);  // an entry, but no token for it
    queue.Push(3, &a);
    std::uint32_t code = 0;
    void* buffer = nullptr;
    EXPECT_EQ(1, queue.Pop(code, buffer));
    EXPECT_EQ(1U, code);
    EXPECT_EQ(&c, buffer);
}

TEST(OutboundQueue, MutexLockedTwiceNeedsOneUnlockByItsHolder) {
    CLinuxMutex mutex("test");
    EXPECT_TRUE(mutex.Lock());
    EXPECT_TRUE(mutex.Lock());
    const Captured foreign = Capture([&] { std::thread([&] { EXPECT_FALSE(mutex.Unlock()); }).join(); });
    EXPECT_EQ("CnlLinuxMutex::Unlock() :  Error - Mutex not locked or not owned by the thread! \n",
              foreign.out);
    EXPECT_TRUE(mutex.Unlock());
    std::thread([&] { EXPECT_TRUE(mutex.Lock() && mutex.Unlock()); }).join();
}

TEST(OutboundQueue, SemaphoreHasNoTimedWait) {
    CLinuxCountingSem sem(1);
    EXPECT_TRUE(sem.Wait(0, 5));  // leaves the token where it is
    EXPECT_TRUE(sem.Wait(0, 0));
    EXPECT_FALSE(sem.Wait(0, 0));
    EXPECT_TRUE(sem.Wait(2, 1));  // only 1 blocks
    EXPECT_TRUE(sem.Post());
    EXPECT_TRUE(sem.Wait(1, 0));
    EXPECT_FALSE(sem.Wait(0, 0));
}

}  // namespace
