// Live values while another process writes them.
#include <atomic>
#include <thread>

#include "tests/support/TestRuntime.h"

namespace {

using LiveValues = CStationTest;

// Every write of the other side changes all bits of a raw value, and both words of a counter, at once.
TEST_F(LiveValues, AreNeverMixedFromTwoWrites) {
    constexpr int kReads = 300000;
    constexpr std::uint64_t kBothWords = 0x0000000100000001;
    auto* raw = static_cast<volatile std::uint32_t*>(
        static_cast<void*>(static_cast<std::uint8_t*>(live.getYc(5)) + kYcRaw));
    auto* counter =
        static_cast<std::uint64_t*>(static_cast<void*>(static_cast<std::uint8_t*>(live.getDd(3)) + kDdLow));
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (std::uint64_t value = 0; !done; value += kBothWords) {
            __atomic_store_n(counter, value, __ATOMIC_RELAXED);
            for (int i = 0; i < 100; ++i) *raw = i % 2 == 0 ? 0xFFFFFFFF : 0;
        }
    });
    int mixed = 0;
    for (int i = 0; i < kReads; ++i) {
        const std::uint32_t value = live.Yc(5).raw;
        const std::uint64_t count = live.Counter(3);
        if ((value != 0 && value != 0xFFFFFFFF) || count % kBothWords != 0) ++mixed;
    }
    done = true;
    writer.join();
    EXPECT_EQ(0, mixed);
}

}  // namespace
