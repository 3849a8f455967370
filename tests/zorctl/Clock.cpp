// A clock without waiting, preloaded into zorctl: it begins at START (seconds of UTC, or 2024-03-05 09:45:00
// in the tests' local time), and a wait moves it on. CUES are lines of a time since the beginning and a shell
// command, which is run when that time has come.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr std::int64_t kSecond = 1000000000;

std::int64_t Begin() {
    const char* start = std::getenv("START");
    return (start != nullptr ? std::atoll(start) : 1709603100) * kSecond;
}

std::int64_t now = Begin();
const char* cues = std::getenv("CUES");

void MoveOn(std::int64_t nanoseconds) {
    const std::int64_t until = now + nanoseconds;
    for (char* command = nullptr; cues != nullptr && *cues != '\0';) {
        const std::int64_t due = Begin() + static_cast<std::int64_t>(std::strtod(cues, &command) * 1e9);
        if (due > until) break;
        const char* end = strchrnul(command, '\n');
        char line[4096];
        std::snprintf(line, sizeof line, "unset CUES; %.*s", static_cast<int>(end - command), command);
        cues = *end != '\0' ? end + 1 : end;
        unsetenv("LD_PRELOAD");  // the shell may be of another machine
        if (std::system(line) < 0) std::abort();
    }
    now = until;
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t, timespec* time) {
    *time = {static_cast<std::time_t>(now / kSecond), static_cast<long>(now % kSecond)};
    return 0;
}

std::time_t time(std::time_t* seconds) {
    if (seconds != nullptr) *seconds = static_cast<std::time_t>(now / kSecond);
    return static_cast<std::time_t>(now / kSecond);
}

int sigtimedwait(const sigset_t*, siginfo_t*, const timespec* span) {
    MoveOn(span->tv_sec * kSecond + span->tv_nsec);
    errno = EAGAIN;
    return -1;
}

int usleep(useconds_t micros) {
    MoveOn(std::int64_t{micros} * 1000);
    return 0;
}
}
