#include "tools/zorctl/TakenMessage.h"

#include <cstdio>
#include <cstring>

#include "tools/zorctl/Commands.h"

TakenMessage TakeApart(const SysVMessage& message, std::size_t length, const std::timespec& time) {
    TakenMessage taken{};
    taken.arrival.time = time;
    if (length >= kProcessIdSize) std::memcpy(&taken.arrival.sender, message.text, kProcessIdSize);
    const std::size_t frameLength = length > kProcessIdSize ? length - kProcessIdSize : 0;
    taken.decoded = DecodeFrame(message.Frame(), frameLength);
    return taken;
}

TakenMessage TakeApart(const SysVMessage& message, std::size_t length) {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return TakeApart(message, length, now);
}

bool Print(const TakenMessage& taken, bool json) {
    const std::string line =
        json ? JsonLine(taken.arrival, taken.decoded) : TextLine(taken.arrival, taken.decoded);
    // Line by line, for whoever reads the other end of a pipe.
    if (std::puts(line.c_str()) >= 0 && std::fflush(stdout) == 0) return true;
    Complain("cannot write to standard output");
    return false;
}
