// The processes around a station, as /proc shows them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

inline constexpr char kRuntimeName[] = "zor_runtime";

struct ProcessInfo {
    std::int32_t id;
    std::string name;
    bool isOurs;  // known to share this process's System V objects
};

// Those that live and share this process's System V objects: a container has a station of its own. One whose
// namespace this user may not see may share them and is listed, too.
std::vector<ProcessInfo> LivingProcesses();

// Empty for a process that is gone.
std::string ProcessName(std::int32_t id);

// True for a process that has the shared segment `id` with `key` attached, as far as this user may see.
bool HasAttached(std::int32_t process, int key, unsigned long id);
