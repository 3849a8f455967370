// zorctl main send: any message to the process, also such as no correct peer would send.
#include <CLI/CLI.hpp>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/messages/CommandFrames.h"
#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/text/HexText.h"

namespace {

struct SendOptions {
    std::vector<std::string> frame;  // hexadecimal, in as many words as it likes
    std::uint16_t code = 0;
    std::string data;
    long type = kTypeFromMain;
    std::int32_t sender = 0;  // 0: this process
    std::size_t size = kMessageTextSize;
    double wait = 0;
};

EExit Send(const SendOptions& options) {
    std::vector<std::uint8_t> bytes;
    std::string words = options.data;
    for (const std::string& word : options.frame) words += word + ' ';
    ParseHex(words, bytes);
    const bool raw = !options.frame.empty();
    if (bytes.size() > kFrameCapacity - (raw ? 0 : kFrameData)) {
        Complain(std::to_string(bytes.size()) + " bytes are more than a message holds");
        return EExit::WrongUse;
    }
    const Frame frame = BuildInboundFrame(options.code, bytes.data(), raw ? 0 : bytes.size());
    SysVMessage message =
        raw ? MessageWith(bytes.data(), bytes.size()) : MessageWith(frame.bytes.data(), frame.length);
    if (options.sender != 0) std::memcpy(message.text, &options.sender, kProcessIdSize);
    message.type = options.type;
    return SendCommand(message, options.size, options.wait);
}

}  // namespace

void AddMainSend(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<SendOptions>();
    CLI::App* command = parent.add_subcommand(
        "send", "Send the process any message, also such as a correct zor_main would not");
    CLI::Option_group* what = command->add_option_group("Message", "One of these");
    what->add_option("FRAME", options->frame, "The frame as it stands")->check(HexBytes(0, kFrameCapacity));
    auto* code = what->add_option("--code", options->code, "A frame with this code and a fitting count");
    what->require_option(1);
    command->add_option("--data", options->data, "What follows the code")
        ->check(HexBytes(0, kFrameCapacity))
        ->needs(code);
    command->add_option("--type", options->type, "Type of the System V message")
        ->capture_default_str()
        ->check(CLI::Range(1L, 0x7FFFFFFFL));
    command->add_option("--sender", options->sender, "Process id in front of the frame; without it zorctl's");
    command->add_option("--size", options->size, "Bytes of text, process id included")
        ->capture_default_str()
        ->check(CLI::Range(std::size_t{0}, kMessageTextSize));
    AddSeconds(*command, "--wait", options->wait, "Seconds to wait for the queue, and for room in it");
    command->callback([options, &result] { result = Send(*options); });
}
