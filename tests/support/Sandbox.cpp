#include "tests/support/Sandbox.h"

#include <cshm.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "System/AppFiles.h"
#include "ipc/Frame.h"

namespace {

constexpr char kMount[] = "/mnt";
// Says of a folder found on the host that an interrupted test run made it and that it may go.
constexpr char kMarker[] = "/mnt/nandflash/.made-by-tests";

void RemoveStation(const char* directory) {
    if (const int queue = msgget(kQueueKey, 0); queue >= 0) msgctl(queue, IPC_RMID, nullptr);
    if (const int segment = shmget(CShmLayout::kKey, 0, 0); segment >= 0) shmctl(segment, IPC_RMID, nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

// With a user namespace for those who may not have the others alone.
bool Unshare() {
    if (unshare(CLONE_NEWNS | CLONE_NEWIPC) == 0) return true;
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS | CLONE_NEWIPC | CLONE_NEWUSER) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";
    std::ofstream("/proc/self/gid_map") << "0 " + group + " 1";
    return true;
}

// What keeps the host's own from being used, or null: then the lock is held until the process ends. It is on
// the folder, so that no lock file stays behind.
const char* TakeHost() {
    if (geteuid() != 0) return "only root may use the host's /mnt/nandflash instead";
    if (flock(open(kMount, O_RDONLY | O_DIRECTORY | O_CLOEXEC), LOCK_EX) != 0) return "/mnt cannot be locked";
    if (access(kMarker, F_OK) == 0) RemoveStation(kScratchDirectory);
    if (access(kScratchDirectory, F_OK) == 0) return "/mnt/nandflash belongs to somebody else";
    if (msgget(kQueueKey, 0) >= 0 || shmget(CShmLayout::kKey, 0, 0) >= 0)
        return "the queue or the segment of a station belongs to somebody else";
    CleanStation();
    return (std::ofstream(kMarker) << std::flush).good() ? nullptr : "/mnt/nandflash cannot be made";
}

}  // namespace

int RunInSandbox(const std::function<int()>& run) {
    if (std::getenv("ZOR_TEST_NO_NAMESPACES") == nullptr && EnterSandbox()) return run();
    if (const char* why = TakeHost(); why != nullptr) {
        std::fprintf(stderr, "tests cannot run: no private namespaces (unshare is refused), and %s\n", why);
        return 1;
    }
    const int result = run();
    RemoveStation(kScratchDirectory);
    return result;
}

bool EnterSandbox() {
    if (!Unshare() || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", kMount, "tmpfs", 0, nullptr) != 0)
        return false;
    CleanStation();
    return true;
}

void CleanStation() {
    RemoveStation(kAppDirectory);
    std::error_code ignored;
    std::filesystem::create_directories(kAppDirectory, ignored);
}
