// What a test shares with the faults that are preloaded into the process under test. Fixed widths: the two
// may be built for different machines.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

// Environment variables: path of a file that holds a FaultPlan, which both map; path of a file to which every
// change of a file is appended as a FileChange and `size` bytes.
inline constexpr char kFaultPlan[] = "ZOR_TEST_FAULT_PLAN";
inline constexpr char kChangeRecord[] = "ZOR_TEST_CHANGE_RECORD";

// Families of calls: fdatasync is one of Sync, calloc and realloc are of Malloc.
enum class EFault : std::uint32_t { Open, Write, Sync, Unlink, Msgsnd, Msgrcv, Malloc };

struct FaultPlan {
    EFault fault;
    std::uint32_t nth;        // call that fails, counted from 1 at the process's start; 0 for none
    std::uint32_t always;     // 1: so do all that follow
    std::int32_t error;       // their errno
    std::uint32_t calls;      // how many of the family there were,
    std::uint32_t hits;       // and how many of them failed
    std::uint32_t startHits;  // those before the loop began; it leaves the field alone until then
};

inline FaultPlan* MapFaultPlan(const char* path) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    void* plan = mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return static_cast<FaultPlan*>(plan);
}

// Create is an Open that made the file. The path follows these two and Remove, data follows Put.
enum class EChange : std::uint32_t { Open, Create, Put, Cut, Sync, Remove };

struct FileChange {
    EChange kind;
    std::int32_t file;     // descriptor, as in the last Open or Create
    std::uint32_t offset;  // Put: where; Cut: the new size
    std::uint32_t size;    // of what follows
};
static_assert(sizeof(FileChange) == 16);
