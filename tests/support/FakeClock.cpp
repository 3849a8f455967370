#include "tests/support/FakeClock.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "tests/support/HookPlan.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr useconds_t kTick = 100000;

HookPlan own;
HookPlan* plan = &own;
std::int64_t slept = 0;
std::int64_t due = 0;
std::function<void()> dueAct;

// The test's end being gone ends the process: nobody will let it go on.
void AwaitTurn() {
    char turn = 0;
    ssize_t got = 0;
    while ((got = read(kTurnSocket, &turn, 1)) < 0 && errno == EINTR) {
    }
    if (got != 1) _exit(99);
}

__attribute__((constructor)) void Attach() {
    void* shared = mmap(nullptr, sizeof(HookPlan), PROT_READ | PROT_WRITE, MAP_SHARED, kPlanFile, 0);
    if (shared == MAP_FAILED) return;
    plan = static_cast<HookPlan*>(shared);
    AwaitTurn();
}

}  // namespace

HookPlan& Plan() {
    return *plan;
}

void FakeClock::Set(std::time_t seconds) {
    plan->nowMicros = seconds * kSecond;
    slept = 0;
    dueAct = nullptr;
}

std::int64_t FakeClock::Slept() {
    return slept;
}

void FakeClock::After(std::int64_t micros, std::function<void()> act) {
    due = plan->nowMicros + micros;
    dueAct = std::move(act);
}

extern "C" {

std::time_t time(std::time_t* at) noexcept {
    const auto seconds = static_cast<std::time_t>(plan->nowMicros / kSecond);
    if (at != nullptr) *at = seconds;
    return seconds;
}

int gettimeofday(timeval* at, void* /*zone*/) noexcept {
    at->tv_sec = static_cast<std::time_t>(plan->nowMicros / kSecond);
    at->tv_usec = static_cast<suseconds_t>(plan->nowMicros % kSecond);
    return 0;
}

int usleep(useconds_t micros) {
    plan->nowMicros += micros;
    slept += micros;
    if (dueAct && plan->nowMicros >= due) std::exchange(dueAct, nullptr)();
    if (micros >= kTick && plan->passes > 0 && --plan->passes == 0) {
        if (send(kTurnSocket, "", 1, MSG_NOSIGNAL) != 1) _exit(99);
        AwaitTurn();
    }
    return 0;
}

}  // extern "C"
