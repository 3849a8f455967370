// zorctl main send: any message to the process, also such as no correct peer would send.
#include <CLI/CLI.hpp>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "System/Numbers.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/text/HexText.h"

namespace {

struct SendOptions {
    std::vector<std::string> frame;  // hexadecimal, in as many words as it likes
    std::string text;                // the same of a whole message
    std::uint16_t code = 0;
    std::string data;
    int count = -1;  // negative: as many as there are
    long type = kTypeFromMain;
    std::int32_t sender = 0;  // 0: this process
    std::size_t size = kMessageTextSize;
    double wait = 0;
};

// What the options say; false with a line on standard error when it does not fit.
bool BuildMessage(const SendOptions& options, SysVMessage& message, std::size_t& size) {
    std::vector<std::uint8_t> bytes;
    std::string words = options.text + options.data;
    for (const std::string& word : options.frame) words += word + ' ';
    ParseHex(words, bytes);
    const bool whole = !options.text.empty();
    const bool raw = whole || !options.frame.empty();
    if (bytes.size() > kFrameCapacity - (raw ? 0 : kFrameData) + (whole ? kProcessIdSize : 0)) {
        Complain("%zu bytes are more than a message holds", bytes.size());
        return false;
    }
    size = whole ? bytes.size() : options.size;
    Frame frame = BuildInboundFrame(options.code, bytes.data(), raw ? 0 : bytes.size());
    message = raw ? MessageWith(bytes.data(), bytes.size()) : MessageWith(frame.bytes.data(), frame.length);
    if (whole && size > 0) std::memcpy(message.text, bytes.data(), size);
    if (!whole && options.sender != 0) std::memcpy(message.text, &options.sender, kProcessIdSize);
    if (options.count >= 0)
        PutLe(message.Frame() + kFrameCount, 2, static_cast<std::uint64_t>(options.count));
    message.type = options.type;
    return true;
}

EExit Send(const SendOptions& options) {
    SysVMessage message{};
    std::size_t size = 0;
    if (!BuildMessage(options, message, size)) return EExit::WrongUse;
    CStopSignals stop;
    const CDeadline deadline = DeadlineIn(options.wait);
    CMainChannel channel;
    const bool sent = channel.Open(deadline, stop) && channel.Send(message, size, deadline, stop);
    return sent ? EExit::Done : EExit::Failed;
}

std::string CheckHex(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    return ParseHex(text, bytes) ? "" : "not pairs of hexadecimal digits: " + text;
}

}  // namespace

void AddMainSend(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<SendOptions>();
    CLI::App* command = parent.add_subcommand(
        "send", "Send the process any message, also such as a correct zor_main would not");
    CLI::Option_group* what = command->add_option_group("Message", "One of these");
    what->add_option("FRAME", options->frame, "The frame as it stands")->check(CheckHex, "HEX");
    auto* text = what->add_option("--text", options->text, "A message's whole text, process id included")
                     ->check(CheckHex, "HEX");
    auto* code = what->add_option("--code", options->code, "A frame with this code and a fitting count");
    what->require_option(1);
    command->add_option("--data", options->data, "What follows the code")
        ->check(CheckHex, "HEX")
        ->needs(code);
    command->add_option("--claim", options->count, "The count, right or wrong")
        ->check(CLI::Range(0, 0xFFFF))
        ->excludes(text);
    command->add_option("--type", options->type, "Type of the System V message")
        ->capture_default_str()
        ->check(CLI::Range(1L, 0x7FFFFFFFL));
    command->add_option("--sender", options->sender, "Process id in front of the frame; without it zorctl's")
        ->excludes(text);
    command->add_option("--size", options->size, "Bytes of text, process id included")
        ->capture_default_str()
        ->check(CLI::Range(std::size_t{0}, kMessageTextSize))
        ->excludes(text);
    AddSeconds(*command, "--wait", options->wait, "Seconds to wait for the queue, and for room in it");
    command->callback([options, &result] { result = Send(*options); });
}
