// zorctl main listen: every message of the process, decoded, one line each.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "points/PortNumbering.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/messages/MessageLines.h"

namespace {

struct ListenOptions {
    LineForm form;
    bool peek = false;
    long type = kTypeToMain;
    std::vector<int> ports;          // empty: all
    std::vector<std::string> names;  // of messages; empty: all
    unsigned long count = 0;         // 0: no end
    double seconds = -1;             // negative: no end
    double idle = -1;                // negative: no end
};

// The code in `name`, which is a message's name or a number such as 34518 or 0x86d6.
std::optional<std::uint16_t> CodeNamed(const std::string& name) {
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) { return c == 'a' ? 'A' : c; });
    if (const MessageName* message = MessageNamed(upper); message != nullptr) return message->code;
    char* end = nullptr;
    const unsigned long code = std::strtoul(name.c_str(), &end, 0);
    if (name.empty() || *end != '\0' || code > 0xFFFF) return std::nullopt;
    return static_cast<std::uint16_t>(code);
}

bool IsWanted(const ListenOptions& options, const DecodedFrame& decoded) {
    const auto isOf = [&decoded](int port) { return FieldText(decoded, "port") == std::to_string(port); };
    const auto isNamed = [&decoded](const std::string& name) { return CodeNamed(name) == decoded.code; };
    return (options.ports.empty() || std::any_of(options.ports.begin(), options.ports.end(), isOf)) &&
           (options.names.empty() || std::any_of(options.names.begin(), options.names.end(), isNamed));
}

EExit ShowMessages(const ListenOptions& options, CMainChannel& channel, CDeadline deadline,
                   CStopSignals& stop) {
    CMessageLines lines(options.form);
    CDeadline idle = DeadlineIn(options.idle);
    unsigned long seen = 0;
    unsigned long others = 0;
    SysVMessage message{};
    for (std::size_t length = 0; options.count == 0 || seen < options.count;) {
        const int got = options.peek ? channel.Peek(message, length) : channel.Receive(message, length);
        if (got < 0) return EExit::Failed;
        if (got > 0) {
            const TakenMessage taken = TakeApart(message, length);
            const bool wanted = IsWanted(options, taken.decoded);
            if (wanted && !lines.Print(taken)) return EExit::Failed;
            if (wanted) idle = DeadlineIn(options.idle);
            ++(wanted ? seen : others);
            // Nothing to wait for, but a steady stream of messages ends in time all the same. With 0 seconds
            // everything that waits is read.
            if (options.seconds <= 0 || !HasPassed(deadline)) continue;
        }
        if (!HasPassed(std::min(deadline, idle)) && !stop.Pause()) continue;
        break;
    }
    if (others > 0 && !options.peek) Complain(std::to_string(others) + " other messages taken and not shown");
    if (seen >= options.count) return EExit::Done;
    return Complain(std::to_string(seen) + " of " + std::to_string(options.count) + " messages came");
}

EExit Listen(const ListenOptions& options) {
    CStopSignals stop;
    const CDeadline deadline = DeadlineIn(options.seconds);
    CMainChannel channel(options.type);
    if (!channel.Open(deadline, stop)) return EExit::Failed;
    return ShowMessages(options, channel, deadline, stop);
}

std::string CheckName(const std::string& name) {
    return CodeNamed(name) ? "" : "no message such as A1_14, and no code: " + name;
}

}  // namespace

void AddMainListen(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<ListenOptions>();
    CLI::App* command = parent.add_subcommand(
        "listen", "Take every message to zor_main from the queue and print it, decoded, one line each");
    AddLineForm(*command, options->form);
    command->add_flag("--peek", options->peek,
                      "Leave the messages in the queue: show what is or comes there");
    command
        ->add_option("--type", options->type,
                     "Take messages of this type instead: what others have left in the queue")
        ->capture_default_str()
        ->check(CLI::Range(1L, std::numeric_limits<long>::max()));
    command
        ->add_option("--port", options->ports, "Show only this port's messages; may be given more than once")
        ->check(CLI::Range(0, kMaxPorts));
    command
        ->add_option("--message", options->names,
                     "Show only messages of this name or code; may be given more than once")
        ->check(CheckName, "NAME");
    command->add_option("--count", options->count, "End after this many messages; exit code 1 if fewer came")
        ->check(CLI::Range(1UL, 1'000'000'000UL));
    command
        ->add_option("--seconds", options->seconds,
                     "End after this time, 0 with what is there; waiting for the queue counts")
        ->check(DecimalIn(0.0, 1e9));
    command->add_option("--idle", options->idle, "End when nothing to show has come for this many seconds")
        ->check(DecimalIn(0.0, 1e9));
    command->footer(
        "Waits for the queue where there is none yet. Ctrl-C ends it.\n"
        "Messages that are filtered out are taken from the queue too. With --peek none is; beside a "
        "zor_main\n"
        "that reads, one may come and go unseen.");
    command->callback([options, &result] { result = Listen(*options); });
}
