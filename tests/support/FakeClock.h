// The clock of the tests. Its definitions of `time`, `gettimeofday` and `usleep` replace libc's, for SQLite
// too.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

struct FakeClock {
    static constexpr std::time_t kStart = 1709603100;  // 2024-03-05 09:45:00 in the tests' local time

    // Sets the time, whole seconds of UTC, and forgets the sleeps.
    static void Set(std::time_t seconds);
    // The sum of the `usleep` calls since Set; each moved the time on and returned at once.
    static std::int64_t Slept();
    // Calls `act` once, from within the sleep that moves the clock on by `micros` or more from now.
    static void After(std::int64_t micros, std::function<void()> act);
};
