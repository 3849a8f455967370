#include "tools/zorctl/station/Processes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <sstream>
#include <system_error>

#include "System/Numbers.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

std::string ProcPath(const std::string& process, const char* entry) {
    return "/proc/" + process + '/' + entry;
}

// Name and state from the one line "ID (NAME) STATE ...", whose name may hold blanks and parentheses.
bool ReadProcess(const std::string& process, std::string& name, char& state) {
    std::string line;
    if (!ReadWholeFile(ProcPath(process, "stat"), line).empty()) return false;
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(") ");
    if (open == std::string::npos || close == std::string::npos || close + 2 >= line.size()) return false;
    name = line.substr(open + 1, close - open - 1);
    state = line[close + 2];
    return true;
}

// No value where this user may not see.
std::optional<bool> SharesIpc(const std::string& process) {
    struct stat own {};
    struct stat other {};
    if (stat("/proc/self/ns/ipc", &own) != 0) return true;
    // A process that has just died shares nothing.
    if (stat(ProcPath(process, "ns/ipc").c_str(), &other) != 0) {
        if (errno == EACCES || errno == EPERM) return std::nullopt;
        return false;
    }
    return own.st_dev == other.st_dev && own.st_ino == other.st_ino;
}

}  // namespace

std::vector<ProcessInfo> LivingProcesses() {
    constexpr char kZombie = 'Z';
    std::vector<ProcessInfo> processes;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string process = entry->path().filename().string();
        if (process.find_first_not_of("0123456789") != std::string::npos) continue;
        std::string name;
        char state = kZombie;
        if (!ReadProcess(process, name, state) || state == kZombie) continue;
        const std::optional<bool> shares = SharesIpc(process);
        if (shares.value_or(true))
            processes.push_back({std::stoi(process), name, shares.has_value(), state == 'T' || state == 't'});
    }
    std::sort(processes.begin(), processes.end(),
              [](const ProcessInfo& a, const ProcessInfo& b) { return a.id < b.id; });
    return processes;
}

std::string ProcessName(std::int32_t id) {
    std::string name;
    char state = 0;
    return ReadProcess(std::to_string(id), name, state) ? name : "";
}

std::int64_t StartOf(std::int32_t process) {
    constexpr int kStartField = 20;  // counted from the state, which follows the name
    std::string line;
    std::string machine;
    if (!ReadWholeFile(ProcPath(std::to_string(process), "stat"), line).empty()) return 0;
    if (!ReadWholeFile("/proc/stat", machine).empty()) return 0;
    const std::size_t boot = machine.find("btime ");
    std::istringstream fields(line.substr(line.rfind(')') + 1));
    std::string ticks;
    for (int i = 0; i < kStartField; ++i) fields >> ticks;
    if (!fields || boot == std::string::npos) return 0;
    return ParseInt64(machine.c_str() + boot + std::strlen("btime ")) +
           ParseInt64(ticks.c_str()) / sysconf(_SC_CLK_TCK);
}

std::optional<bool> HasAttached(std::int32_t process, int key, unsigned long id) {
    std::string maps;
    if (!ReadWholeFile(ProcPath(std::to_string(process), "maps"), maps).empty()) return std::nullopt;
    // "ADDRESSES PERMISSIONS OFFSET DEVICE ID      /SYSVKEY (deleted)"
    char mark[32];
    std::snprintf(mark, sizeof mark, "/SYSV%08x", static_cast<unsigned>(key));
    for (std::size_t at = maps.find(mark); at != std::string::npos; at = maps.find(mark, at + 1)) {
        const std::string before = Trimmed(maps.substr(0, at).substr(maps.rfind('\n', at) + 1));
        if (before.substr(before.rfind(' ') + 1) == std::to_string(id)) return true;
    }
    return false;
}
