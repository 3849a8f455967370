// The System V queue, looked at without taking anything from it.
#pragma once

#include <cstdint>
#include <ctime>
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

// True for a queue without room for one more message.
bool IsFull(const QueueState& queue);
