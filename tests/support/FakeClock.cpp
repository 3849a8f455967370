#include "tests/support/FakeClock.h"

#include <sys/time.h>
#include <unistd.h>

#include <utility>

namespace {

constexpr std::int64_t kSecond = 1000000;

struct State {
    std::int64_t micros = FakeClock::kStart * kSecond;
    std::int64_t slept = 0;
    std::int64_t due = 0;
    std::function<void()> act;
};

State& Clock() {
    static State state;
    return state;
}

}  // namespace

void FakeClock::Set(std::time_t seconds) {
    Clock() = {seconds * kSecond, 0, 0, nullptr};
}

std::int64_t FakeClock::Slept() {
    return Clock().slept;
}

void FakeClock::After(std::int64_t micros, std::function<void()> act) {
    Clock().due = Clock().micros + micros;
    Clock().act = std::move(act);
}

extern "C" {

std::time_t time(std::time_t* at) noexcept {
    const auto seconds = static_cast<std::time_t>(Clock().micros / kSecond);
    if (at != nullptr) *at = seconds;
    return seconds;
}

int gettimeofday(timeval* at, void* /*zone*/) noexcept {
    at->tv_sec = static_cast<std::time_t>(Clock().micros / kSecond);
    at->tv_usec = static_cast<suseconds_t>(Clock().micros % kSecond);
    return 0;
}

int usleep(useconds_t micros) {
    Clock().micros += micros;
    Clock().slept += micros;
    if (Clock().act && Clock().micros >= Clock().due) std::exchange(Clock().act, nullptr)();
    return 0;
}

}  // extern "C"
