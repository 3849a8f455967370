// The processes around a station, as /proc shows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

inline constexpr char kRuntimeName[] = "zor_runtime";

struct ProcessInfo {
    std::int32_t id;
    std::string name;
    bool isOurs;     // known to share this process's System V objects
    bool isStopped;  // by a signal or a debugger
};

// Those that live and share this process's System V objects: a container has a station of its own. One whose
// namespace this user may not see may share them and is listed, too.
std::vector<ProcessInfo> LivingProcesses();

// Empty for a process that is gone.
std::string ProcessName(std::int32_t id);

// When a process began, in seconds since 1970 by today's clock, up to one second early; 0 where nobody knows.
std::int64_t StartOf(std::int32_t process);

// Whether a process has the shared segment `id` with `key` attached; no value where this user may not see.
std::optional<bool> HasAttached(std::int32_t process, int key, unsigned long id);
