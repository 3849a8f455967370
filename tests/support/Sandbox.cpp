#include "tests/support/Sandbox.h"

#include <cshm.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
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

volatile std::sig_atomic_t supervisedChild = 0;

bool WriteFile(const char* path, const std::string& text) {
    std::ofstream file(path);
    file << text << std::flush;
    return file.good();
}

bool Unshare(bool withUserNamespace) {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS | CLONE_NEWIPC | (withUserNamespace ? CLONE_NEWUSER : 0)) != 0) return false;
    if (!withUserNamespace) return true;
    return WriteFile("/proc/self/setgroups", "deny") &&
           WriteFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
           WriteFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

bool EnterNamespaces() {
    return (Unshare(false) || Unshare(true)) &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", kMount, "tmpfs", 0, nullptr) == 0;
}

void RemoveIpc() {
    if (const int queue = msgget(kQueueKey, 0); queue >= 0) msgctl(queue, IPC_RMID, nullptr);
    if (const int segment = shmget(CShmLayout::kKey, 0, 0); segment >= 0) shmctl(segment, IPC_RMID, nullptr);
}

void RemoveHostStation() {
    RemoveIpc();
    std::error_code ignored;
    std::filesystem::remove_all(kScratchDirectory, ignored);
}

int Refuse(const char* why) {
    std::fprintf(stderr, "tests cannot run: no private namespaces (unshare is refused), and %s\n", why);
    return 1;
}

int Supervise(const std::function<int()>& run) {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::exit(run());
    }
    supervisedChild = child;
    std::signal(SIGINT, SIG_IGN);  // the child, in the same foreground group, ends by it
    std::signal(SIGTERM, [](int) { kill(supervisedChild, SIGKILL); });
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    std::fprintf(stderr, "tests ended by signal %d\n", WTERMSIG(status));
    return 1;
}

int RunOnHost(const std::function<int()>& run) {
    if (geteuid() != 0) return Refuse("only root may use the host's /mnt/nandflash instead");
    // Test processes take turns. The lock is on the folder, so that no lock file stays behind.
    const int lock = open(kMount, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock < 0 || flock(lock, LOCK_EX) != 0) return Refuse("/mnt cannot be locked");
    if (access(kMarker, F_OK) == 0) RemoveHostStation();
    if (access(kScratchDirectory, F_OK) == 0) return Refuse("/mnt/nandflash belongs to somebody else");
    if (msgget(kQueueKey, 0) >= 0 || shmget(CShmLayout::kKey, 0, 0) >= 0)
        return Refuse("the queue or the segment of a station belongs to somebody else");
    CleanStation();
    if (!WriteFile(kMarker, "")) return Refuse("/mnt/nandflash cannot be made");
    const int result = Supervise(run);
    RemoveHostStation();
    close(lock);
    return result;
}

}  // namespace

int RunInSandbox(const std::function<int()>& run) {
    if (std::getenv("ZOR_TEST_NO_NAMESPACES") != nullptr || !EnterSandbox()) return RunOnHost(run);
    return run();
}

bool EnterSandbox() {
    if (!EnterNamespaces()) return false;
    CleanStation();
    return true;
}

void CleanStation() {
    RemoveIpc();
    std::error_code ignored;
    std::filesystem::remove_all(kAppDirectory, ignored);
    std::filesystem::create_directories(kAppDirectory, ignored);
}
