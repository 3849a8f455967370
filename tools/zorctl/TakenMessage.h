// A message to zor_main, taken from the queue.
#pragma once

#include <ctime>

#include "ipc/Frame.h"
#include "tools/zorctl/Decode.h"
#include "tools/zorctl/DecodedLine.h"

struct TakenMessage {
    Arrival arrival;
    DecodedFrame decoded;
};

// Decodes a message with `length` bytes of text, which arrives at `time`, or now.
TakenMessage TakeApart(const SysVMessage& message, std::size_t length, const std::timespec& time);
TakenMessage TakeApart(const SysVMessage& message, std::size_t length);
// Prints it as one line. False, with a line on standard error, when standard output takes no more.
bool Print(const TakenMessage& taken, bool json);
