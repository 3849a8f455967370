#include "tests/support/FakeClock.h"

#include <sys/time.h>

#include <numeric>
#include <utility>

namespace {

constexpr std::int64_t kSecond = 1000000;

struct State {
    std::int64_t micros = FakeClock::kStart * kSecond;
    std::vector<useconds_t> sleeps;
    std::int64_t due = 0;
    std::function<void()> act;
};

State& Clock() {
    static State state;
    return state;
}

}  // namespace

void FakeClock::Set(std::time_t seconds) {
    Clock() = {seconds * kSecond, {}, 0, nullptr};
}

const std::vector<useconds_t>& FakeClock::Sleeps() {
    return Clock().sleeps;
}

std::int64_t FakeClock::Slept() {
    return std::accumulate(Sleeps().begin(), Sleeps().end(), std::int64_t{0});
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
    Clock().sleeps.push_back(micros);
    if (Clock().act && Clock().micros >= Clock().due) std::exchange(Clock().act, nullptr)();
    return 0;
}

}  // extern "C"
