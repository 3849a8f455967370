// The main loop, one pass per tick.
#pragma once

#include <cstdint>

class CRuntimeData;

// Runs everything of one pass but its sleep: the scheduler tick, the drain and, on every sixth pass, the poll
// for an inbound command. `receiveCounter` (passes since the last poll) is the loop's own and starts at 0.
void RunPass(CRuntimeData& runtime, std::uint8_t& receiveCounter);

// Runs passes for ever.
[[noreturn]] void RunMainLoop(CRuntimeData& runtime);
