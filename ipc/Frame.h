// The frame that carries a message code and a body, and the System V message around it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The one System V queue; both directions share it and are told apart by the message type.
inline constexpr int kQueueKey = 0x1234;
inline constexpr int kQueuePermissions = 0666;
inline constexpr long kTypeToMain = 170;
inline constexpr long kTypeFromMain = 138;

inline constexpr std::size_t kMessageTextSize =
    2052;                                         // what msgsnd and msgrcv are told, whatever the frame holds
inline constexpr std::size_t kProcessIdSize = 4;  // native byte order, in front of the frame
inline constexpr std::size_t kFrameCapacity = kMessageTextSize - kProcessIdSize;

// A message as msgsnd and msgrcv take it.
struct SysVMessage {
    long type;
    std::uint8_t text[kMessageTextSize];

    std::uint8_t* Frame() { return text + kProcessIdSize; }
    const std::uint8_t* Frame() const { return text + kProcessIdSize; }
};
static_assert(sizeof(SysVMessage::text) == 2052, "the peer counts on this size");
static_assert(offsetof(SysVMessage, text) == sizeof(long), "no gap between type and text");
// 2056 bytes on a 32-bit unit; on a 64-bit host the longer `long` and its alignment add to it.
static_assert(sizeof(SysVMessage) == (sizeof(long) == 4 ? 2056U : 2064U), "unexpected padding");

// Offsets in a frame. The count is little-endian and the code big-endian: the peer expects this mixed order.
inline constexpr std::size_t kFrameCount = 0;  // 2 bytes: how many bytes follow this field
inline constexpr std::size_t kFrameCode = 2;   // 2 bytes
inline constexpr std::size_t kFrameData = 4;   // outbound two zero bytes; inbound the first data bytes
inline constexpr std::size_t kFrameBody = 6;   // outbound body
inline constexpr std::size_t kMaxBody = kFrameCapacity - kFrameBody;
static_assert(kMaxBody == 2042);

struct Frame {
    std::array<std::uint8_t, kFrameCapacity> bytes{};
    std::size_t length = 0;  // bytes in use
};

// Makes a frame of `length` bytes in all: the count and the code in front of what it holds.
void PutFrameHead(Frame& frame, std::uint16_t code, std::size_t length);

// Frames `length` bytes of `body` under the low 16 bits of `code`; a body above kMaxBody is cut to it.
Frame BuildFrame(std::uint32_t code, const std::uint8_t* body, std::size_t length);

// Where the parts of a frame lie. `data` points into the frame's bytes, at kFrameData; `dataLength` is what
// the count claims and the bytes at hand really hold.
struct FrameParts {
    std::uint16_t count = 0;
    std::uint16_t code = 0;
    const std::uint8_t* data = nullptr;
    std::size_t dataLength = 0;
};

// Takes `length` bytes at `frame` apart; bytes that are missing read as 0.
FrameParts SplitFrame(const std::uint8_t* frame, std::size_t length);
