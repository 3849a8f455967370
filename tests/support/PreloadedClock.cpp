// A clock that the test drives, preloaded into the real program: `usleep` moves the time on and, at the end
// of a pass of the main loop, stands still until the test grants more passes. Calls that change files are
// counted, and one of them can be the process's last. Free of the C++ library, so that it can be loaded
// before anything else.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include "tests/support/ClockProtocol.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr useconds_t kTick = 100000;

int testSocket = -1;
ClockGrant grant{};
std::uint32_t fileCalls = 0;
std::uint32_t syncs = 0;

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The test's end being gone ends the process: nobody will grant another pass.
void AwaitGrant() {
    ssize_t got = 0;
    do {
        got = read(testSocket, &grant, sizeof grant);
    } while (got < 0 && errno == EINTR);
    if (got != sizeof grant) _exit(99);
    fileCalls = 0;
    syncs = 0;
}

void StandStill() {
    const ClockReport report{grant.nowMicros, fileCalls, syncs};
    if (send(testSocket, &report, sizeof report, MSG_NOSIGNAL) != sizeof report) _exit(99);
    AwaitGrant();
}

// Counts a file call. True for the one that the process does not survive.
bool IsLastFileCall() {
    return ++fileCalls == grant.killAtFileCall;
}

void Die() {
    kill(getpid(), SIGKILL);
    for (;;) pause();
}

__attribute__((constructor)) void Attach() {
    const char* number = std::getenv(kClockSocket);
    if (number == nullptr) return;
    testSocket = std::atoi(number);
    fcntl(testSocket, F_SETFD, FD_CLOEXEC);
    AwaitGrant();
}

// Libraries sleep too (SQLite at a locked file); only the program's own sleep ends a pass.
bool IsProgram(const void* address) {
    Dl_info caller{};
    Dl_info program{};
    return dladdr(address, &caller) != 0 &&
           dladdr(reinterpret_cast<const void*>(getauxval(AT_ENTRY)), &program) != 0 &&
           caller.dli_fbase == program.dli_fbase;
}

}  // namespace

extern "C" {

std::time_t time(std::time_t* at) noexcept {
    const auto seconds = static_cast<std::time_t>(grant.nowMicros / kSecond);
    if (at != nullptr) *at = seconds;
    return seconds;
}

int gettimeofday(timeval* at, void* /*zone*/) noexcept {
    at->tv_sec = static_cast<std::time_t>(grant.nowMicros / kSecond);
    at->tv_usec = static_cast<suseconds_t>(grant.nowMicros % kSecond);
    return 0;
}

int usleep(useconds_t micros) {
    grant.nowMicros += micros;
    if (testSocket < 0) return 0;
    if (micros >= kTick && IsProgram(__builtin_return_address(0)) && --grant.passes == 0) StandStill();
    return 0;
}

// The file calls that SQLite makes. The program's own output does not pass through here.
ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t offset) {
    const auto real = Real<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64");
    if (!IsLastFileCall()) return real(file, data, size, offset);
    real(file, data, size / 2, offset);
    Die();
    return -1;
}

int ftruncate64(int file, off64_t size) noexcept {
    if (IsLastFileCall()) Die();
    return Real<int(int, off64_t)>("ftruncate64")(file, size);
}

int unlink(const char* path) noexcept {
    if (IsLastFileCall()) Die();
    return Real<int(const char*)>("unlink")(path);
}

int fdatasync(int file) {
    ++syncs;
    if (IsLastFileCall()) Die();
    return Real<int(int)>("fdatasync")(file);
}

int fsync(int file) {
    ++syncs;
    if (IsLastFileCall()) Die();
    return Real<int(int)>("fsync")(file);
}

}  // extern "C"
