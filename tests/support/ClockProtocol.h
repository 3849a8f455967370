// What a test and the preloaded clock of the process under test tell each other over one socket. Fixed
// widths: the two may be built for different machines.
#pragma once

#include <cstdint>

// Environment variable with the number of the inherited socket.
inline constexpr char kClockSocket[] = "ZOR_TEST_CLOCK_SOCKET";

// Test -> process: go on, from this time, until so many passes of the main loop are over.
struct ClockGrant {
    std::int64_t nowMicros;
    std::uint32_t passes;
    std::uint32_t killAtFileCall;  // die in the middle of the so-manieth file call from now; 0 for none
};
static_assert(sizeof(ClockGrant) == 16);

// Process -> test: the passes are over, the process stands still. Counts are those since the last grant.
struct ClockReport {
    std::int64_t nowMicros;
    std::uint32_t fileCalls;  // that write, sync, cut or remove a file
    std::uint32_t syncs;      // those of them that wait for the disk
};
static_assert(sizeof(ClockReport) == 16);
