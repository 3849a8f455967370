#include "cshm.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace {

constexpr bool Follows(const CShmLayout::Table& table, const CShmLayout::Table& before) {
    return table.offset == before.offset + static_cast<std::size_t>(before.entries) * before.entrySize;
}
static_assert(Follows(CShmLayout::kYc, CShmLayout::kHeader) && Follows(CShmLayout::kYx, CShmLayout::kYc) &&
                  Follows(CShmLayout::kYx2, CShmLayout::kYx) && Follows(CShmLayout::kDd, CShmLayout::kYx2) &&
                  Follows(CShmLayout::kGunState, CShmLayout::kDd) &&
                  Follows(CShmLayout::kDevice, CShmLayout::kGunState) &&
                  Follows(CShmLayout::kCharge, CShmLayout::kDevice) &&
                  Follows({CShmLayout::kSize, 0, 0}, CShmLayout::kCharge),
              "the tables stand without holes");

void PutU32(unsigned char* at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) at[i] = static_cast<unsigned char>(value >> (8 * i));
}

std::uint32_t GetU32(const unsigned char* at) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(at[i]) << (8 * i);
    return value;
}

void Complain(const char* what) {
    std::fprintf(stderr, "libcshm: segment 0x%X: %s\n", CShmLayout::kKey, what);
}

unsigned char* Attach(int id) {
    void* base = shmat(id, nullptr, 0);
    // shmat reports failure as (void*)-1.
    if (reinterpret_cast<std::intptr_t>(base) == -1) {
        Complain(std::strerror(errno));
        return nullptr;
    }
    return static_cast<unsigned char*>(base);
}

unsigned char* Create(int id) {
    unsigned char* base = Attach(id);
    if (base == nullptr) return nullptr;
    PutU32(base + CShmLayout::kVersionOffset, CShmLayout::kVersion);
    PutU32(base + CShmLayout::kSizeOffset, static_cast<std::uint32_t>(CShmLayout::kSize));
    // The magic comes last, so that nobody takes a half-made segment for a ready one.
    std::atomic_thread_fence(std::memory_order_release);
    std::copy_n(CShmLayout::kMagic, 4, base);
    return base;
}

bool HasMagic(const unsigned char* base) {
    const bool same = std::memcmp(base, CShmLayout::kMagic, 4) == 0;
    std::atomic_thread_fence(std::memory_order_acquire);
    return same;
}

unsigned char* Open() {
    const int id = shmget(CShmLayout::kKey, 0, 0);
    shmid_ds state{};
    if (id < 0 || shmctl(id, IPC_STAT, &state) < 0) {
        Complain(std::strerror(errno));
        return nullptr;
    }
    if (state.shm_segsz < CShmLayout::kSize) {
        Complain("too small");
        return nullptr;
    }
    unsigned char* base = Attach(id);
    if (base == nullptr) return nullptr;
    // Its creator may be between creating it and writing the header: give it a moment.
    constexpr timespec kPause{0, 2'000'000};
    for (int i = 0; i < 50 && !HasMagic(base); ++i) nanosleep(&kPause, nullptr);
    if (HasMagic(base) && GetU32(base + CShmLayout::kVersionOffset) == CShmLayout::kVersion &&
        GetU32(base + CShmLayout::kSizeOffset) == CShmLayout::kSize)
        return base;
    Complain("wrong header");
    shmdt(base);
    return nullptr;
}

unsigned char* CreateOrOpen() {
    const int id = shmget(CShmLayout::kKey, CShmLayout::kSize,
                          static_cast<int>(IPC_CREAT | IPC_EXCL | CShmLayout::kPermissions));
    if (id >= 0) return Create(id);
    if (errno == EEXIST) return Open();
    Complain(std::strerror(errno));
    return nullptr;
}

}  // namespace

CShm::CShm() : m_base(CreateOrOpen()) {
    if (m_base == nullptr) return;
    m_pGunState = m_base + CShmLayout::kGunState.offset;
    m_pDevice = m_base + CShmLayout::kDevice.offset;
    m_pCharge = m_base + CShmLayout::kCharge.offset;
}

CShm::~CShm() {
    if (m_base != nullptr) shmdt(m_base);
}

unsigned char* CShm::Entry(const CShmLayout::Table& table, int index) const {
    if (m_base == nullptr || index < 0 || index >= table.entries) return nullptr;
    return m_base + table.offset + static_cast<std::size_t>(index) * table.entrySize;
}

void* CShm::getYc(int index) {
    return Entry(CShmLayout::kYc, index);
}
void* CShm::getYx(int index) {
    return Entry(CShmLayout::kYx, index);
}
void* CShm::getYx2(int index) {
    return Entry(CShmLayout::kYx2, index);
}
void* CShm::getDd(int index) {
    return Entry(CShmLayout::kDd, index);
}
