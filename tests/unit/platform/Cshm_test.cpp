// The shared segment to the byte: the library's stand-in, and the readers that stand on it.
#include <cshm.h>
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/shm.h>

#include <csignal>
#include <memory>
#include <utility>

#include "tests/support/TestRuntime.h"

namespace {

using Cshm = CEmptyStationTest;

// The next segment that is attached, write-protected until the first write.
bool guardNext = false;
void* guarded = nullptr;
volatile std::ptrdiff_t firstWrite = -1;

}  // namespace

extern "C" void* shmat(int id, const void* at, int flags) noexcept {
    using Attach = void*(int, const void*, int);
    void* base = reinterpret_cast<Attach*>(dlsym(RTLD_NEXT, "shmat"))(id, at, flags);
    if (std::exchange(guardNext, false)) mprotect(guarded = base, 4096, PROT_READ);
    return base;
}

namespace {

std::uint8_t* Segment(const CLiveValues& live) {
    return static_cast<std::uint8_t*>(const_cast<CLiveValues&>(live).getYc(0)) - 64;
}

TEST_F(Cshm, SegmentToTheByte) {
    CLiveValues live;
    std::uint8_t* base = Segment(live);
    const std::pair<const void*, std::ptrdiff_t> kEntries[] = {
        {live.getYc(8191), 425996}, {live.getYx(0), 426048},      {live.getYx(8191), 819216},
        {live.getYx2(0), 819264},   {live.getYx2(8191), 1212432}, {live.getDd(0), 1212480},
        {live.getDd(255), 1226760},
    };
    for (const auto& [at, offset] : kEntries) EXPECT_EQ(offset, static_cast<const std::uint8_t*>(at) - base);
    for (const int index : {-1, 8192, INT32_MIN})
        EXPECT_TRUE(live.getYc(index) == nullptr && live.getYx(index) == nullptr &&
                    live.getYx2(index) == nullptr && live.getDd(index) == nullptr);
    EXPECT_EQ(nullptr, live.getDd(256));
    EXPECT_EQ("43 53 48 4d 01 00 00 00 60 c3 12 00 " + ToHex(Bytes(52)), ToHex(base, 64));
    shmid_ds state{};
    ASSERT_EQ(0, shmctl(shmget(0x5A53, 0, 0), IPC_STAT, &state));
    EXPECT_EQ(1229664U, state.shm_segsz);
    EXPECT_EQ(0660, state.shm_perm.mode & 0777);
}

// Nobody takes a half-made segment for a ready one: what its creator writes first is not the mark that it is.
TEST_F(Cshm, HeaderIsNotWrittenFirst) {
    struct sigaction act {};
    act.sa_flags = SA_SIGINFO;
    act.sa_sigaction = [](int, siginfo_t* info, void*) {
        mprotect(guarded, 4096, PROT_READ | PROT_WRITE);
        firstWrite = static_cast<std::uint8_t*>(info->si_addr) - static_cast<std::uint8_t*>(guarded);
    };
    struct sigaction before {};
    sigaction(SIGSEGV, &act, &before);
    guardNext = true;
    const CLiveValues live;
    sigaction(SIGSEGV, &before, nullptr);
    EXPECT_LE(4, firstWrite);
    EXPECT_EQ("43 53 48 4d 01 00 00 00 60 c3 12 00", ToHex(guarded, 12));
}

TEST_F(Cshm, ReadersFindTheirBytes) {
    {
        CLiveValues first;  // what it wrote stays
        for (std::size_t i = 64; i < 1229664; ++i)
            Segment(first)[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    }
    CLiveValues live;
    const std::uint8_t* base = Segment(live);
    for (int port = 0; port <= 8; ++port) {
        const std::ptrdiff_t place = std::max(port - 1, 0);
        EXPECT_EQ(base[1226816 + place * 4 + 1], live.GunState(port));
        EXPECT_EQ(ToHex(base + 1226912 + place * 344, 344), ToHex(live.ChargingArea(port).data(), 344));
    }
    EXPECT_EQ(ToHex(base + 1226848 + 44, 8), ToHex(live.EquipmentNumber().data(), 8));
    EXPECT_EQ(base[426048 + 8191 * 48 + 44], live.Signal(8191));
    const LiveYc yc = live.Yc(2);
    EXPECT_EQ(ToHex(base + 64 + 2 * 52 + 4, 40), ToHex(yc.area, sizeof yc.area));
    EXPECT_EQ(ToHex(base + 64 + 2 * 52 + 44, 4), ToHex(&yc.coefficient, 4));
    EXPECT_EQ(ToHex(base + 64 + 2 * 52 + 48, 4), ToHex(&yc.raw, 4));
    const std::uint64_t counter = live.Counter(3);
    EXPECT_EQ(ToHex(base + 1212480 + 3 * 56 + 48, 8), ToHex(&counter, 8));
    for (const int port : {-1, 9, 1000}) EXPECT_EQ(0, live.GunState(port)) << port;
    for (const int index : {-1, 8192, INT32_MAX}) EXPECT_EQ(0, live.Signal(index)) << index;
}

TEST_F(Cshm, ForeignSegmentIsLeftAloneAndReadsAsZeros) {
    const struct {
        std::size_t size;
        const char* header;
        const char* complaint;
    } kCases[] = {
        {1229663, "43 53 48 4d 01 00 00 00 60 c3 12 00", "too small"},
        {1229664, "43 53 48 4e 01 00 00 00 60 c3 12 00", "wrong header"},
        {1229664, "43 53 48 4d 02 00 00 00 60 c3 12 00", "wrong header"},
        {1229664, "43 53 48 4d 01 00 00 00 61 c3 12 00", "wrong header"},
    };
    for (const auto& c : kCases) {
        CleanStation();
        void* segment = shmat(shmget(0x5A53, c.size, IPC_CREAT | 0660), nullptr, 0);
        std::memset(segment, 0xEE, c.size);
        std::memcpy(segment, Hex(c.header).data(), 12);
        std::unique_ptr<CShmCTRL> none;
        Printed([&] { none = std::make_unique<CShmCTRL>(); });
        EXPECT_EQ("libcshm: segment 0x5A53: " + std::string(c.complaint) + "\n", errors);
        none->ResetLiveValues();
        EXPECT_EQ(
            0, none->Signal(0) + none->GunState(1) + none->EquipmentNumber()[0] + none->ChargingArea(1)[0]);
        EXPECT_EQ(0U, none->Yc(0).raw + none->Counter(0));
        EXPECT_EQ(std::string(c.header) + " ee", ToHex(segment, 13));
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
    EXPECT_EQ(ToHex(Bytes(48, 0xFF)), ToHex(live.getYx(612), 48));
}

}  // namespace
