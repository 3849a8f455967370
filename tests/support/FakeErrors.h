// System calls that fail on demand, and a count of allocations, in the unit tests.
#pragma once

#include <cstdint>

// The next call of msgget, msgsnd or msgrcv, whichever comes first, fails with this errno; later ones work
// again.
void FailNextQueueCall(int error);

// How often the process allocated so far. Stands still under the sanitizers, whose allocator is not ours to
// count.
std::uint64_t Allocations();
inline constexpr bool kCountsAllocations =
#ifdef __SANITIZE_ADDRESS__
    false;
#else
    true;
#endif
