// A message to zor_main, taken from the queue or copied.
#pragma once

#include <cstdint>
#include <ctime>
#include <vector>

#include "ipc/Frame.h"
#include "tools/zorctl/messages/Decode.h"

struct TakenMessage {
    std::timespec time{};  // wall clock
    std::int32_t sender = 0;
    std::vector<std::uint8_t> frame;  // what its count claims, and more where bytes behind that are not zero
    DecodedFrame decoded;
};

// Decodes a message with `length` bytes of text, which arrives at `time`, or now.
TakenMessage TakeApart(const SysVMessage& message, std::size_t length, const std::timespec& time);
TakenMessage TakeApart(const SysVMessage& message, std::size_t length);
