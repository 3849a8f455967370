// From the bytes of a frame to the named fields of its message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "ipc/Frame.h"
#include "ipc/Messages.h"

struct DecodedField {
    std::string name;
    std::string value;
    bool number;  // a decimal number, otherwise text
};

struct DecodedFrame {
    std::uint16_t code = 0;
    const MessageName* message = nullptr;  // null for a code that nobody knows
    std::vector<DecodedField> fields;      // the port first, where the message has one
    bool isList = false;                   // the body is a list, perhaps an empty one
    std::vector<std::vector<DecodedField>> entries;
    std::string document;   // text of a JSON body
    std::string undecoded;  // the body in hexadecimal, where nothing decodes it
    std::size_t bodyLength = 0;
    std::string trouble;  // what is wrong with the frame or its body, empty when all is well
};

// A message to zor_main, taken from the queue or copied.
struct TakenMessage {
    std::timespec time{};  // wall clock
    std::int32_t sender = 0;
    std::vector<std::uint8_t> frame;  // what its count claims, and more where bytes behind that are not zero
    DecodedFrame decoded;
};

// Decodes a message with `length` bytes of text, which arrives at `time`, or now.
TakenMessage TakeApart(const SysVMessage& message, std::size_t length, const std::timespec& time);
TakenMessage TakeApart(const SysVMessage& message, std::size_t length);

// The entry for a name such as "A1_5", or null.
const MessageName* MessageNamed(const std::string& name);

// The value of the named field, empty where there is none.
std::string FieldText(const DecodedFrame& decoded, const char* name);

// Takes `length` bytes at `frame` for a message to zor_main; any bytes at all will do.
DecodedFrame DecodeFrame(const std::uint8_t* frame, std::size_t length);
