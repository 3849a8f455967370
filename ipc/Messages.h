// Codes and names of the messages to zor_main.
#pragma once

#include <cstdint>

// The code of message A1_n.
constexpr std::uint16_t MessageCode(unsigned n) {
    return static_cast<std::uint16_t>(34504 + n);
}

inline constexpr std::uint16_t kCodeA1_5 = MessageCode(5);    // charging status
inline constexpr std::uint16_t kCodeA1_6 = MessageCode(6);    // idle status, JSON
inline constexpr std::uint16_t kCodeA1_9 = MessageCode(9);    // known to the drain only
inline constexpr std::uint16_t kCodeA1_11 = MessageCode(11);  // signal changes
inline constexpr std::uint16_t kCodeA1_13 = MessageCode(13);  // full signal snapshot
inline constexpr std::uint16_t kCodeA1_14 = MessageCode(14);  // port state
inline constexpr std::uint16_t kCodeA1_15 = MessageCode(15);  // gun-signal changes
inline constexpr std::uint16_t kCodeA1_16 = MessageCode(16);  // charging record

struct MessageName {
    std::uint16_t code;
    const char* name;
    const char* meaning;
};

inline constexpr MessageName kMessages[] = {
    {kCodeA1_5, "A1_5", "charging status"},   {kCodeA1_6, "A1_6", "idle status"},
    {kCodeA1_9, "A1_9", "reserved"},          {kCodeA1_11, "A1_11", "signal changes"},
    {kCodeA1_13, "A1_13", "signal snapshot"}, {kCodeA1_14, "A1_14", "port state"},
    {kCodeA1_15, "A1_15", "gun signals"},     {kCodeA1_16, "A1_16", "charging record"},
};

// The entry for `code`, or null for a code that this process does not know.
constexpr const MessageName* FindMessage(std::uint16_t code) {
    for (const MessageName& message : kMessages)
        if (message.code == code) return &message;
    return nullptr;
}
