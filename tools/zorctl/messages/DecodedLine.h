// A decoded message as one line.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "tools/zorctl/messages/Decode.h"
#include "tools/zorctl/text/Json.h"

inline constexpr char kClockFormat[] = "%H:%M:%S";
inline constexpr char kDateFormat[] = "%Y-%m-%dT%H:%M:%S";
// Local time in a `strftime` format, milliseconds behind it.
std::string TimeText(const std::timespec& time, const char* format);

// What is known of a message beside its frame.
struct LineHead {
    std::string time;                    // as it is to stand there; empty for none
    std::optional<std::int32_t> sender;  // process id, for JSON
    std::string frame;                   // all of the frame in hexadecimal, for JSON; empty for none
};

// "12:00:00.123 A1_14 port=1 equipment=0102030405060708 state=3"; no line break at the end.
// The entries of a list follow in brackets, "[135=1 136=0]"; what is not decoded as "body[N]=" and
// hexadecimal bytes; trouble in parentheses.
std::string TextLine(const LineHead& head, const DecodedFrame& decoded);

// The same without the time.
std::string UntimedLine(const DecodedFrame& decoded);

// The same as one JSON object: time, message, code, sender, then frame, fields, entries, document, body
// and trouble, as far as there are such.
Json AsJson(const LineHead& head, const DecodedFrame& decoded);
