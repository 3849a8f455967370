// The shared segment to the byte: the library's stand-in, and the readers that stand on it.
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/shm.h>

#include <csignal>
#include <utility>

#include "tests/support/TestRuntime.h"

namespace {

using Cshm = CEmptyStationTest;

// Tells where the next segment that is attached seems to begin.
std::function<void*(void*)> attached;

std::uint8_t* guarded = nullptr;
std::function<void(std::ptrdiff_t)> touched;

}  // namespace

extern "C" void* shmat(int id, const void* at, int flags) noexcept {
    using Attach = void*(int, const void*, int);
    void* base = reinterpret_cast<Attach*>(dlsym(RTLD_NEXT, "shmat"))(id, at, flags);
    return attached ? std::exchange(attached, nullptr)(base) : base;
}

namespace {

// The next access to the page that `protection` does not allow calls `act` first, with its place.
void Guard(void* page, int protection, std::function<void(std::ptrdiff_t)> act) {
    struct sigaction action {};
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_RESETHAND);
    action.sa_sigaction = [](int, siginfo_t* info, void*) {
        mprotect(guarded, 4096, PROT_READ | PROT_WRITE);
        std::exchange(touched, nullptr)(static_cast<std::uint8_t*>(info->si_addr) - guarded);
    };
    sigaction(SIGSEGV, &action, nullptr);
    guarded = static_cast<std::uint8_t*>(page);
    touched = std::move(act);
    mprotect(page, 4096, protection);
}

// Nobody takes a half-made segment for a ready one: what its creator writes first is not the mark that it is.
TEST_F(Cshm, HeaderIsNotWrittenFirst) {
    std::ptrdiff_t firstWrite = -1;
    attached = [&](void* base) {
        Guard(base, PROT_READ, [&](std::ptrdiff_t place) { firstWrite = place; });
        return base;
    };
    const CLiveValues live;
    EXPECT_LE(4, firstWrite);
    EXPECT_EQ("43 53 48 4d 01 00 00 00 60 c3 12 00 " + ToHex(Bytes(52)), ToHex(guarded, 64));
    shmid_ds state{};
    shmctl(shmget(0x5A53, 0, 0), IPC_STAT, &state);
    EXPECT_EQ(0660, state.shm_perm.mode & 0777);
}

TEST_F(Cshm, SegmentToTheByte) {
    {
        CLiveValues first;  // what it wrote stays
        auto* bytes = static_cast<std::uint8_t*>(first.getYc(0));
        for (std::size_t i = 64; i < 1229664; ++i) bytes[i - 64] = static_cast<std::uint8_t>(i * 7 + i / 251);
    }
    CLiveValues live;
    const auto* base = static_cast<const std::uint8_t*>(live.getYc(0)) - 64;
    EXPECT_TRUE(live.getYc(8191) == base + 425996 && live.getYx2(8191) == base + 1212432);
    EXPECT_TRUE(live.getDd(255) == base + 1226760 && live.getDd(256) == nullptr && live.getYc(-1) == nullptr);
    for (const auto& [port, place] : {std::pair(0, 0), {1, 0}, {8, 7}}) {
        EXPECT_EQ(base[1226816 + place * 4 + 1], live.GunState(port));
        EXPECT_EQ(ToHex(base + 1226912 + place * 344, 344), ToHex(live.ChargingArea(port).data(), 344));
    }
    EXPECT_EQ(0, live.GunState(-1) + live.GunState(9) + live.Signal(-1) + live.Signal(8192));
    EXPECT_EQ(ToHex(base + 1226848 + 44, 8), ToHex(live.EquipmentNumber().data(), 8));
    EXPECT_EQ(base[426048 + 8191 * 48 + 44], live.Signal(8191));
    const LiveYc yc = live.Yc(2);
    EXPECT_EQ(ToHex(base + 64 + 2 * 52 + 4, 48),
              ToHex(yc.area, sizeof yc.area) + ' ' + ToHex(&yc.coefficient, 4) + ' ' + ToHex(&yc.raw, 4));
    const std::uint64_t counter = live.Counter(3);
    EXPECT_EQ(ToHex(base + 1212480 + 3 * 56 + 48, 8), ToHex(&counter, 8));
}

// A counter whose halves lie on two pages carries between the read of its low half and the next of the high.
TEST_F(Cshm, CounterIsNeverMixedFromTwoWrites) {
    attached = [](void* base) { return static_cast<std::uint8_t*>(base) + 3980; };
    CLiveValues live;
    auto* const high = static_cast<std::uint8_t*>(live.getDd(0)) + kDdHigh;
    live.SetDd(0, 0xFFFFFFFF);
    Guard(high - 4096, PROT_NONE, [&](std::ptrdiff_t) {
        Guard(high, PROT_NONE, [&](std::ptrdiff_t) { live.SetDd(0, 0x100000000); });
    });
    EXPECT_EQ(0x100000000U, live.Counter(0));
}

TEST_F(Cshm, ForeignSegmentIsLeftAloneAndReadsAsZeros) {
    for (const auto& row : Table(R"(
1229663 | 43 53 48 4d 01 00 00 00 60 c3 12 00 | too small
1229664 | 43 53 48 4d 01 00 00 00 61 c3 12 00 | wrong header)")) {
        CleanStation();
        void* segment = shmat(shmget(0x5A53, std::stoul(row[0]), IPC_CREAT | 0660), nullptr, 0);
        std::memset(segment, 0xEE, 1229663);
        std::memcpy(segment, Hex(row[1]).data(), 12);
        Printed([] {
            CShmCTRL none;
            none.ResetLiveValues();
            EXPECT_EQ(0U, none.Yc(0).raw + none.Counter(0) + none.GunState(1) + none.ChargingArea(1)[0]);
        });
        EXPECT_EQ("libcshm: segment 0x5A53: " + row[2] + "\n", errors);
        EXPECT_EQ(row[1] + " ee", ToHex(segment, 13));
        shmdt(segment);
    }
}

TEST_F(Cshm, ResetCoversItsEntriesOnly) {
    CLiveValues live;
    std::memset(live.getYc(0), 0xFF, 613 * 52);
    std::memset(live.getYx(0), 0xFF, 613 * 48);
    live.ResetLiveValues();
    const std::string cleared = ToHex(Bytes(44));
    EXPECT_EQ(cleared + " 00 00 80 3f 00 00 00 00", ToHex(live.getYc(611), 52));
    for (const auto& [i, state] : {std::pair{0, "00"}, {102, "01"}, {230, "01"}, {611, "00"}})
        EXPECT_EQ(cleared + " " + state + " ff ff ff", ToHex(live.getYx(i), 48)) << i;
    EXPECT_EQ(ToHex(Bytes(52, 0xFF)), ToHex(live.getYc(612), 52));
}

}  // namespace
