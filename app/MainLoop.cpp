#include "app/MainLoop.h"

#include <unistd.h>

#include "app/RuntimeData.h"

void RunPass(CRuntimeData& runtime, std::uint8_t& receiveCounter) {
    constexpr std::uint8_t kPassesBetweenPolls = 5;
    runtime.SchedulerTick();
    runtime.DrainOutbound();
    if (receiveCounter < kPassesBetweenPolls) {
        ++receiveCounter;
    } else if (!runtime.HasWaited()) {
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
