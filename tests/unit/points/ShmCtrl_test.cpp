// The live-value readers over the shared segment.
#include "points/ShmCtrl.h"

#include <sys/shm.h>

#include <algorithm>

#include "tests/support/TestRuntime.h"

namespace {

using LiveValues = CStationTest;

TEST_F(LiveValues, ReadersFindTheirBytes) {
    for (int port = 1; port <= 8; ++port) live.SetGunState(port, static_cast<std::uint8_t>(10 * port));
    EXPECT_EQ(10, live.GunState(0));
    for (int port = 1; port <= 8; ++port) EXPECT_EQ(10 * port, live.GunState(port));
    live.SetSignal(8191, 7);
    EXPECT_EQ(7, live.Signal(8191));
    EXPECT_EQ(0, live.Signal(8190));
    const std::array<std::uint8_t, 8> number = live.EquipmentNumber();
    EXPECT_EQ("44 45 46 47 48 49 50 51", ToHex(number.data(), number.size()));
}

TEST_F(LiveValues, OutsideIsZero) {
    live.SetGunState(8, 5);
    std::memset(static_cast<std::uint8_t*>(live.getDd(0)) + (1226848 - 1212480), 0xFF,
                4);  // behind the gun table
    for (const int port : {-1, 9, 1000}) EXPECT_EQ(0, live.GunState(port)) << port;
    for (const int index : {-1, 8192, INT32_MAX, INT32_MIN}) EXPECT_EQ(0, live.Signal(index)) << index;
}

TEST_F(LiveValues, NoSegmentIsZero) {
    CleanStation();
    ASSERT_LE(0, shmget(CShmLayout::kKey, 4096, IPC_CREAT | 0660));
    std::unique_ptr<CShmCTRL> none;
    EXPECT_EQ("libcshm: segment 0x5A53: too small\n",
              Capture([&] { none = std::make_unique<CShmCTRL>(); }).err);
    EXPECT_EQ(0, none->Signal(0));
    EXPECT_EQ(0, none->GunState(1));
    EXPECT_EQ((std::array<std::uint8_t, 8>{}), none->EquipmentNumber());
    none->ResetLiveValues();
}

TEST_F(LiveValues, ResetCoversItsEntriesOnly) {
    constexpr std::size_t kYcSize = 52;
    constexpr std::size_t kYxSize = 48;
    std::memset(live.getYc(0), 0xFF, 613 * kYcSize);
    std::memset(live.getYx(0), 0xFF, 613 * kYxSize);
    live.ResetLiveValues();
    const std::string cleared = ToHex(Bytes(44));
    for (const int i : {0, 1, 611}) {
        EXPECT_EQ(cleared + " 00 00 80 3f 00 00 00 00", ToHex(live.getYc(i), kYcSize)) << i;
        EXPECT_EQ(cleared + " 00 ff ff ff", ToHex(live.getYx(i), kYxSize)) << i;
    }
    for (const int i : {102, 230}) EXPECT_EQ(cleared + " 01 ff ff ff", ToHex(live.getYx(i), kYxSize)) << i;
    EXPECT_EQ(ToHex(Bytes(kYcSize, 0xFF)), ToHex(live.getYc(612), kYcSize));
    EXPECT_EQ(ToHex(Bytes(kYxSize, 0xFF)), ToHex(live.getYx(612), kYxSize));
}

}  // namespace
