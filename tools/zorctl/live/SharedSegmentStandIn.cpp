#include <cshm.h>
#include <sys/shm.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "System/Numbers.h"
#include "tools/zorctl/live/SharedSegment.h"

namespace {

void ReadHeader(int id, SharedSegmentState& state) {
    const void* base = shmat(id, nullptr, SHM_RDONLY);
    // shmat reports failure as (void*)-1.
    if (reinterpret_cast<std::intptr_t>(base) == -1) {
        state.trouble = std::strerror(errno);
        return;
    }
    const auto* header = static_cast<const std::uint8_t*>(base);
    state.version =
        static_cast<std::uint32_t>(GetLe(header + CShmLayout::kVersionOffset, sizeof state.version));
    const bool good = std::memcmp(header, CShmLayout::kMagic, std::strlen(CShmLayout::kMagic)) == 0 &&
                      state.version == CShmLayout::kVersion &&
                      GetLe(header + CShmLayout::kSizeOffset, sizeof(std::uint32_t)) == CShmLayout::kSize;
    if (!good) state.trouble = "wrong header";
    shmdt(base);
}

}  // namespace

SharedSegmentState LookAtSharedSegment() {
    SharedSegmentState state;
    state.known = true;
    state.key = CShmLayout::kKey;
    const int id = shmget(CShmLayout::kKey, 0, 0);
    if (id < 0) return state;
    state.present = true;
    state.id = static_cast<unsigned long>(id);
    shmid_ds kernel{};
    if (shmctl(id, IPC_STAT, &kernel) != 0) {
        state.trouble = std::strerror(errno);
        return state;
    }
    state.size = kernel.shm_segsz;
    state.attached = kernel.shm_nattch;
    state.creator = kernel.shm_cpid;
    if (state.size < CShmLayout::kSize)
        state.trouble = "too small";
    else
        ReadHeader(id, state);
    return state;
}

int LiveEntries() {
    static_assert(CShmLayout::kYx.entries == CShmLayout::kYc.entries &&
                  CShmLayout::kYx.entries == CShmLayout::kYx2.entries);
    return CShmLayout::kYx.entries;
}
