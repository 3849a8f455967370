// What rules the functions in libc's place, in the test program itself and, shared with the test, preloaded
// into the real one. Fixed widths: the two may be built for different machines.
#pragma once

#include <cstdint>

// Families of calls that can fail: fdatasync is one of Sync, calloc and realloc are of Malloc.
enum class ECall : std::uint32_t { None, Open, Read, Write, Sync, Unlink, Unlock, Stat, Queue, Malloc };

struct HookPlan {
    std::int64_t nowMicros = 1709603100000000;
    std::uint32_t passes = 0;       // of the main loop, until the process stands still
    ECall call = ECall::None;       // the family whose calls are counted and of which
    std::uint32_t nth = 0;          // this one fails, counted from 1 (0 for none),
    std::uint32_t count = 0;        // with those that follow, so many together,
    std::int32_t error = 0;         // and with this errno; where that is 0 the process is killed
    std::uint32_t calls = 0;        // how many of the family there were,
    std::uint32_t hits = 0;         // how many of them failed,
    std::uint32_t startHits = ~0U;  // and how many before the loop began, once it did
    char file[48] = "";             // Stat: the only one that fails
};

// The plan in force. Set it, but for the time, as a whole.
HookPlan& Plan();

// The real program's descriptors for the plan, and for the bytes by which test and process take turns.
inline constexpr int kPlanFile = 200;
inline constexpr int kTurnSocket = 201;

// Where the test made this file, each change of a file by the real program is appended to it, with `size`
// bytes.
inline constexpr char kChangeRecord[] = "/mnt/nandflash/record";
enum class EChange : std::uint32_t { Create, Remove, Put, Cut, Sync, SyncDirectory };
struct FileChange {
    EChange kind;
    std::uint32_t inode;
    std::uint32_t offset;  // Put: where; Cut: the new size
    std::uint32_t size;
    char path[64];  // Create and Remove
};
