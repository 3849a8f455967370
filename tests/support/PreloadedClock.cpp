// A clock that the test drives, preloaded into the real program: `usleep` moves the time on and, at the end
// of a pass of the main loop, stands still until the test grants more passes. Free of the C++ library, so
// that it can be loaded before anything else. It also ends the process in the middle of a write, where the
// test asks for it.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/msg.h>
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

// The test's end being gone ends the process: nobody will grant another pass.
void AwaitGrant() {
    ssize_t got = 0;
    do {
        got = read(testSocket, &grant, sizeof grant);
    } while (got < 0 && errno == EINTR);
    if (got != sizeof grant) _exit(99);
}

void EndPass() {
    if (--grant.passes > 0) return;
    const ClockReport report{grant.nowMicros};
    if (write(testSocket, &report, sizeof report) != sizeof report) _exit(99);
    AwaitGrant();
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

// What a function of libc in whose place one of this library stands does.
template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// True for the change to a file in which the process is to die.
bool IsFatal() {
    return grant.fatalWrite > 0 && --grant.fatalWrite == 0;
}

}  // namespace

extern "C" {

ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t offset) {
    const auto next = Next<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64");
    if (!IsFatal()) return next(file, data, size, offset);
    if (next(file, data, size / 2, offset) >= 0) raise(SIGKILL);
    _exit(99);
}

int ftruncate64(int file, off64_t size) noexcept {
    if (IsFatal()) raise(SIGKILL);
    return Next<int(int, off64_t)>("ftruncate64")(file, size);
}

int fdatasync(int file) {
    if (IsFatal()) raise(SIGKILL);
    return Next<int(int)>("fdatasync")(file);
}

int unlink(const char* path) noexcept {
    if (IsFatal()) raise(SIGKILL);
    return Next<int(const char*)>("unlink")(path);
}

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
    if (testSocket >= 0 && micros >= kTick && IsProgram(__builtin_return_address(0))) EndPass();
    return 0;
}

int msgget(key_t key, int flags) noexcept {
    if (grant.msggetError != 0) {
        errno = grant.msggetError;
        return -1;
    }
    return Next<int(key_t, int)>("msgget")(key, flags);
}

}  // extern "C"
