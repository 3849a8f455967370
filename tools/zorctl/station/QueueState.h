// The System V queue, looked at without taking anything from it.
#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>

// One end's last act on the queue; the process id is 0 where there has been none.
struct QueueAct {
    std::int32_t process = 0;
    std::time_t time = 0;
};

struct QueueDirections {
    unsigned long toMain = 0;
    unsigned long fromMain = 0;
    std::map<long, unsigned long> others;  // by their type
};

struct QueueState {
    bool present = false;
    unsigned long messages = 0;
    unsigned long bytes = 0;
    unsigned long mostBytes = 0;
    QueueAct sent;
    QueueAct taken;
    std::optional<QueueDirections> directions;  // where the kernel can copy messages
    std::string trouble;                        // why nothing is known of a queue that is there
};

QueueState LookAtQueue();

// For how many seconds at least a command has waited and none has been taken; 0 where that can still be the
// process at work: it looks for one twice a second, and no wait of its own for a file is as long.
std::time_t CommandsWaitFor(const QueueState& queue);

// True for a queue without room for one more message.
bool IsFull(const QueueState& queue);
