#include "tests/support/FakeClock.h"

#include <sys/time.h>

namespace {

constexpr std::int64_t kSecond = 1000000;

struct State {
    std::int64_t micros = FakeClock::kStart * kSecond;
    std::vector<useconds_t> sleeps;
};

State& Clock() {
    static State state;
    return state;
}

}  // namespace

void FakeClock::Set(std::time_t seconds) {
    Clock() = {seconds * kSecond, {}};
}

void FakeClock::Advance(std::time_t seconds) {
    Clock().micros += seconds * kSecond;
}

const std::vector<useconds_t>& FakeClock::Sleeps() {
    return Clock().sleeps;
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
    Clock().sleeps.push_back(micros);
    return 0;
}

}  // extern "C"
