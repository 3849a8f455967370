#include "app/MainLoop.h"

#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using MainLoop = CStationTest;

TEST_F(MainLoop, QuietPassesAllocateNothing) {
    std::uint8_t counter = 0;
    runtime.m_sendflag = 1;
    Capture([&] {
        for (int i = 0; i < 12; ++i) RunPass(runtime, counter);
    });
    const std::uint64_t before = Allocations();
    for (int i = 0; i < 500; ++i) RunPass(runtime, counter);
    EXPECT_EQ(before, Allocations());

    live.SetGunState(1, 3);  // and the counter does count
    Capture([&] { RunPass(runtime, counter); });
    EXPECT_LT(before, Allocations());
}

}  // namespace
