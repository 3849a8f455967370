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
    std::int32_t msggetError;  // errno with which msgget fails; 0 lets it work
    std::uint32_t fatalWrite;  // of the changes to files, the one in whose middle the process dies; 0: none
    std::uint32_t reserved;
};
static_assert(sizeof(ClockGrant) == 24);

// Process -> test: the passes are over, the process stands still.
struct ClockReport {
    std::int64_t nowMicros;
};
static_assert(sizeof(ClockReport) == 8);
