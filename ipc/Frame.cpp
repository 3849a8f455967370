#include "ipc/Frame.h"

#include <algorithm>
#include <cstring>

#include "System/Numbers.h"

void PutFrameHead(Frame& frame, std::uint16_t code, std::size_t length) {
    frame.length = length;
    PutLe(&frame.bytes[kFrameCount], 2, length - kFrameCode);
    frame.bytes[kFrameCode] = static_cast<std::uint8_t>(code >> 8);
    frame.bytes[kFrameCode + 1] = static_cast<std::uint8_t>(code);
}

Frame BuildFrame(std::uint32_t code, const std::uint8_t* body, std::size_t length) {
    Frame frame;
    length = std::min(length, kMaxBody);
    PutFrameHead(frame, static_cast<std::uint16_t>(code), kFrameBody + length);
    if (length > 0) std::memcpy(&frame.bytes[kFrameBody], body, length);
    return frame;
}

FrameParts SplitFrame(const std::uint8_t* frame, std::size_t length) {
    std::uint8_t head[kFrameData] = {};
    if (length > 0) std::memcpy(head, frame, std::min(length, sizeof head));
    FrameParts parts;
    parts.count = static_cast<std::uint16_t>(GetLe(head + kFrameCount, 2));
    parts.code = static_cast<std::uint16_t>(head[kFrameCode] << 8 | head[kFrameCode + 1]);
    if (length <= kFrameData) return parts;
    parts.data = frame + kFrameData;
    const std::size_t claimed = parts.count > kFrameCode ? parts.count - kFrameCode : 0;
    parts.dataLength = std::min(length - kFrameData, claimed);
    return parts;
}
