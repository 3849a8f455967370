#include "app/MainLoop.h"

#include <unistd.h>

#include "app/RuntimeData.h"

void RunPass(CRuntimeData& runtime, std::uint8_t& receiveCounter) {
    constexpr std::uint8_t kPassesBetweenPolls = 5;
    constexpr std::uint8_t kMostBetweenPolls = 11;
    runtime.SchedulerTick();
    runtime.DrainOutbound();
    // A pass that has waited for a file leaves the poll to the next one, but not for ever.
    const std::uint8_t least = runtime.HasWaited() ? kMostBetweenPolls : kPassesBetweenPolls;
    if (receiveCounter < least) {
        ++receiveCounter;
    } else {
        runtime.MsgRcvFromMain();
        receiveCounter = 0;
    }
}

void RunMainLoop(CRuntimeData& runtime) {
    const useconds_t sleepTime = runtime.TickPeriodMs() * 1000;
    std::uint8_t receiveCounter = 0;
    for (;;) {
        RunPass(runtime, receiveCounter);
        usleep(sleepTime);
    }
}
