// A decoded message as one line.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "tools/zorctl/Decode.h"

struct Arrival {
    std::timespec time;   // wall clock
    std::int32_t sender;  // process id
};

inline constexpr char kClockFormat[] = "%H:%M:%S";
inline constexpr char kDateFormat[] = "%Y-%m-%dT%H:%M:%S";
// Local time in a `strftime` format, milliseconds behind it.
std::string TimeText(const std::timespec& time, const char* format);

// "12:00:00.123 A1_14 port=1 equipment=0102030405060708 state=3", the time local; no line break at the end.
// The entries of a list follow in brackets, "[135=1 136=0]"; what is not decoded as "body[N]=" and
// hexadecimal bytes; trouble in parentheses.
std::string TextLine(const Arrival& arrival, const DecodedFrame& decoded);

// The same without the time.
std::string UntimedLine(const DecodedFrame& decoded);

// The same as one JSON object: time, message, code, sender, then fields, entries, document, body and trouble
// as far as there are such.
std::string JsonLine(const Arrival& arrival, const DecodedFrame& decoded);
