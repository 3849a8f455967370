// What a test shares with the faults that are preloaded into the process under test. Fixed widths: the two
// may be built for different machines.
#pragma once

#include <cstddef>
#include <cstdint>

// Environment variables: path of a file that holds a FaultPlan, which both map; path of a file to which every
// change of a file is appended as a FileChange and `size` bytes.
inline constexpr char kFaultPlan[] = "ZOR_TEST_FAULT_PLAN";
inline constexpr char kChangeRecord[] = "ZOR_TEST_CHANGE_RECORD";

// Families of calls: fdatasync is one of Sync, remove one of Unlink, calloc and realloc are of Malloc.
enum class EFault : std::uint32_t { Open, Write, Sync, Unlink, Msgsnd, Msgrcv, Malloc };

struct FaultPlan {
    EFault fault;
    std::uint32_t nth;     // call that fails, counted from 1 at the process's start; 0 for none
    std::uint32_t always;  // 1: so do all that follow
    std::int32_t error;    // their errno
    std::uint32_t calls;   // how many of the family there were,
    std::uint32_t hits;    // and how many of them failed
};

// Create is an Open that made the file. The path follows these two and Remove, data follows Put.
enum class EChange : std::uint32_t { Open, Create, Put, Cut, Sync, Remove };

struct FileChange {
    EChange kind;
    std::int32_t file;     // descriptor, as in the last Open or Create
    std::uint64_t offset;  // Put: where; Cut: the new size
    std::uint32_t size;    // of what follows
    std::uint32_t reserved;
};
static_assert(sizeof(FileChange) == 24);
