#include "tools/zorctl/messages/TakenMessage.h"

#include <algorithm>
#include <cstring>

TakenMessage TakeApart(const SysVMessage& message, std::size_t length, const std::timespec& time) {
    TakenMessage taken;
    taken.time = time;
    if (length >= kProcessIdSize) std::memcpy(&taken.sender, message.text, kProcessIdSize);
    const std::size_t frameLength = length > kProcessIdSize ? length - kProcessIdSize : 0;
    const std::uint8_t* frame = message.Frame();
    taken.decoded = DecodeFrame(frame, frameLength);
    std::size_t used = frameLength;
    while (used > 0 && frame[used - 1] == 0) --used;
    const std::size_t claimed = kFrameCode + SplitFrame(frame, frameLength).count;
    taken.frame.assign(frame, frame + std::max(used, std::min(claimed, frameLength)));
    return taken;
}

TakenMessage TakeApart(const SysVMessage& message, std::size_t length) {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return TakeApart(message, length, now);
}
