#include "tools/zorctl/messages/Decode.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "tools/zorctl/messages/Bodies.h"
#include "tools/zorctl/text/HexText.h"

namespace {

constexpr std::size_t kFillerSize = kFrameBody - kFrameData;  // two zero bytes in front of an outbound body

void AddTrouble(DecodedFrame& decoded, const std::string& text) {
    if (!decoded.trouble.empty()) decoded.trouble += ", ";
    decoded.trouble += text;
}

void CheckHead(DecodedFrame& decoded, const FrameParts& parts, std::size_t length) {
    constexpr std::size_t kLeastCount = kFrameBody - kFrameCode;
    if (parts.count < kLeastCount)
        AddTrouble(decoded, "count " + std::to_string(parts.count) + " is too small");
    if (parts.count + kFrameCode > length)
        AddTrouble(decoded, "count " + std::to_string(parts.count) + " claims more than the message holds");
    if (std::any_of(parts.data, parts.data + std::min(parts.dataLength, kFillerSize),
                    [](std::uint8_t byte) { return byte != 0; }))
        AddTrouble(decoded, "bytes 4 and 5 are not zero");
}

}  // namespace

const MessageName* MessageNamed(const std::string& name) {
    const auto* found = std::find_if(std::begin(kMessages), std::end(kMessages),
                                     [&name](const MessageName& message) { return message.name == name; });
    return found != std::end(kMessages) ? found : nullptr;
}

std::string FieldText(const DecodedFrame& decoded, const char* name) {
    for (const DecodedField& field : decoded.fields)
        if (field.name == name) return field.value;
    return "";
}

DecodedFrame DecodeFrame(const std::uint8_t* frame, std::size_t length) {
    const FrameParts parts = SplitFrame(frame, length);
    DecodedFrame decoded;
    decoded.code = parts.code;
    decoded.message = FindMessage(parts.code);
    CheckHead(decoded, parts, length);
    const std::size_t filler = std::min(parts.dataLength, kFillerSize);
    const std::uint8_t* body = parts.data + filler;
    decoded.bodyLength = parts.dataLength - filler;
    std::string trouble;
    if (!DecodeBody(parts.code, body, decoded.bodyLength, decoded, trouble))
        decoded.undecoded = HexText(body, decoded.bodyLength, " ");
    if (!trouble.empty()) AddTrouble(decoded, trouble);
    return decoded;
}

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
