// The stand-in for the platform library, to the byte.
#include <cshm.h>
#include <sys/shm.h>

#include <memory>

#include "tests/support/TestRuntime.h"

namespace {

using Cshm = CEmptyStationTest;

// Lays the library's data members open.
class COpenShm : public CShm {
  public:
    using CShm::m_pCharge;
    using CShm::m_pDevice;
    using CShm::m_pGunState;
};

TEST_F(Cshm, SegmentToTheByte) {
    COpenShm shm;
    const auto* base = static_cast<const std::uint8_t*>(shm.getYc(0)) - 64;
    struct Case {
        const void* at;
        std::ptrdiff_t offset;
    };
    const Case cases[] = {
        {shm.getYc(8191), 425996}, {shm.getYx(0), 426048},      {shm.getYx(8191), 819216},
        {shm.getYx2(0), 819264},   {shm.getYx2(8191), 1212432}, {shm.getDd(0), 1212480},
        {shm.getDd(255), 1226760}, {shm.m_pGunState, 1226816},  {shm.m_pDevice, 1226848},
        {shm.m_pCharge, 1226912},
    };
    for (const Case& c : cases) EXPECT_EQ(c.offset, static_cast<const std::uint8_t*>(c.at) - base);
    for (const int index : {-1, 8192}) {
        EXPECT_EQ(nullptr, shm.getYc(index));
        EXPECT_EQ(nullptr, shm.getYx(index));
        EXPECT_EQ(nullptr, shm.getYx2(index));
    }
    EXPECT_EQ(nullptr, shm.getDd(256));
    EXPECT_EQ("43 53 48 4d 01 00 00 00 60 c3 12 00 " + ToHex(Bytes(52)), ToHex(base, 64));
    shmid_ds state{};
    ASSERT_EQ(0, shmctl(shmget(0x5A53, 0, 0), IPC_STAT, &state));
    EXPECT_EQ(1229664U, state.shm_segsz);
    EXPECT_EQ(0660, state.shm_perm.mode & 0777);
}

TEST_F(Cshm, SegmentOutlivesWhoAttached) {
    auto first = std::make_unique<CLiveValues>();
    first->SetSignal(5, 9);
    EXPECT_EQ(9, CLiveValues().Signal(5));
    first.reset();
    EXPECT_EQ(9, CLiveValues().Signal(5));
}

TEST_F(Cshm, ForeignSegmentIsLeftAlone) {
    struct Case {
        std::size_t size;
        const char* header;
        const char* complaint;
    };
    const Case cases[] = {
        {1229663, "43 53 48 4d 01 00 00 00 60 c3 12 00", "too small"},
        {1229664, "43 53 48 4e 01 00 00 00 60 c3 12 00", "wrong header"},
        {1229664, "43 53 48 4d 02 00 00 00 60 c3 12 00", "wrong header"},
        {1229664, "43 53 48 4d 01 00 00 00 61 c3 12 00", "wrong header"},
    };
    for (const Case& c : cases) {
        CleanStation();
        void* segment = shmat(shmget(0x5A53, c.size, IPC_CREAT | 0660), nullptr, 0);
        const Bytes header = Hex(c.header);
        std::memcpy(segment, header.data(), header.size());
        std::unique_ptr<COpenShm> shm;
        EXPECT_EQ("libcshm: segment 0x5A53: " + std::string(c.complaint) + "\n",
                  Capture([&] { shm = std::make_unique<COpenShm>(); }).err);
        EXPECT_TRUE(shm->getYc(0) == nullptr && shm->getYx(0) == nullptr && shm->getYx2(0) == nullptr &&
                    shm->getDd(0) == nullptr);
        EXPECT_TRUE(shm->m_pGunState == nullptr && shm->m_pDevice == nullptr && shm->m_pCharge == nullptr);
        EXPECT_EQ(c.header, ToHex(segment, header.size()));
        shmdt(segment);
    }
}

}  // namespace
