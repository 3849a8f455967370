// What a start leaves behind in the process.
#include "app/StartUp.h"

#include <malloc.h>

#include "tests/support/TestRuntime.h"

namespace {

using StartUpEffects = CStationTest;

#ifndef ZOR_ADDRESS_SANITIZER  // which has an allocator of its own
// A large block that is freed would otherwise have the next one taken from the heap, for good.
TEST_F(StartUpEffects, LargeBlocksStayOutOfTheHeap) {
    MakeConfig(1);
    Printed([this] { StartUp(runtime); });
    constexpr std::size_t kLarge = 12 << 20;  // more than the tests before this one can have left free
    std::free(std::malloc(2 * kLarge));
    const std::size_t before = mallinfo2().hblks;
    void* block = std::malloc(kLarge);
    EXPECT_EQ(before + 1, mallinfo2().hblks);
    std::free(block);
}
#endif

// No record is due for the hour in which it happens.
TEST_F(StartUpEffects, NoRecordForThisHour) {
    MakeConfig(1);
    SetClock("2024-03-05 09:00:00");
    Printed([this] { StartUp(runtime); });
    Printed([this] { runtime.SchedulerTick(); });
    EXPECT_EQ(0, QueryNumber(AppFile(kHistoryFile), "SELECT count(*) FROM tagYC"));
}

}  // namespace
