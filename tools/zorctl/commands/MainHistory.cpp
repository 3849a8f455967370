// zorctl main history and main ack: asks for charging records, and acknowledges them.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/messages/CommandFrames.h"
#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/messages/MessageLines.h"

namespace {

struct HistoryOptions {
    std::uint8_t port = 0;
    std::string date;
    int hour = kWholeDay;
    double seconds = 10;
    LineForm form;
};

struct AckOptions {
    std::uint8_t port = 0;
    std::string date;
    std::string result;
    double wait = 0;
};

// A live record has status 0. A record that is resent at the same time looks like an answer, unless it is of
// another port or a time that was not asked for.
bool IsAnswer(const HistoryOptions& options, const DecodedFrame& decoded) {
    if (decoded.code != kCodeA1_16 || decoded.bodyLength == 0) return decoded.code == kCodeA1_16;
    if (FieldText(decoded, "port") != std::to_string(options.port) || FieldText(decoded, "status") == "0")
        return false;
    const std::string time = FieldText(decoded, "time");
    std::string asked = options.date;
    asked.erase(std::remove(asked.begin(), asked.end(), '-'), asked.end());
    if (options.hour == kWholeDay) return time.compare(0, asked.size(), asked) == 0;
    char end[16];
    std::snprintf(end, sizeof end, "%02d00%02d", options.hour, kHourAnswerEnd);
    return time < asked + end;
}

// The answers to a whole day come by hours.
bool IsLastAnswer(const HistoryOptions& options, const DecodedFrame& decoded) {
    constexpr std::size_t kHourPlace = 8;
    static const std::string kLastHour = std::to_string(kWholeDay - 1);
    return decoded.bodyLength == 0 || options.hour != kWholeDay ||
           FieldText(decoded, "time").compare(kHourPlace, 2, kLastHour) == 0;
}

// Prints answers until the last one has come, none has come for a while after the first one, or the deadline
// has passed.
EExit TakeAnswers(const HistoryOptions& options, CMainChannel& channel, CDeadline deadline,
                  CStopSignals& stop) {
    constexpr double kIdleSeconds = 4;  // the process pauses up to 2.4 s before it sends what it has read
    CMessageLines lines(options.form);
    bool answered = false;
    bool over = false;
    unsigned long others = 0;
    SysVMessage message{};
    std::size_t length = 0;
    for (CDeadline end = deadline; !over && !HasPassed(end);) {
        const int got = channel.Receive(message, length);
        if (got < 0) return EExit::Failed;
        if (got == 0) {
            if (stop.Pause()) break;
            continue;
        }
        const TakenMessage taken = TakeApart(message, length);
        if (!IsAnswer(options, taken.decoded)) {
            ++others;
            continue;
        }
        if (!lines.Print(taken)) return EExit::Failed;
        answered = true;
        over = IsLastAnswer(options, taken.decoded);
        end = std::min(deadline, DeadlineIn(kIdleSeconds));
    }
    if (others > 0) Complain(std::to_string(others) + " other messages taken and not shown");
    return answered ? EExit::Done : Complain("no answer came");
}

EExit AskForHistory(const HistoryOptions& options) {
    CStopSignals stop;
    const CDeadline deadline = DeadlineIn(options.seconds);
    CMainChannel channel;
    if (!channel.Open(deadline, stop)) return EExit::Failed;
    const Frame request = BuildHistoryRequest(options.port, DateNamed(options.date, 0),
                                              static_cast<std::uint8_t>(options.hour));
    if (!channel.Send(request, deadline, stop)) return EExit::Failed;
    return TakeAnswers(options, channel, deadline, stop);
}

EExit Acknowledge(const AckOptions& options) {
    return SendCommand(BuildHistoryAck(options.port, DateNamed(options.date, 0), options.result == "ok"),
                       options.wait);
}

std::string CheckDate(const std::string& text) {
    BcdDate date;
    return ParseDate(text, date) ? "" : "not a date such as 2023-08-30: " + text;
}

// So that 08 is an hour and no attempt at an octal number.
std::string WithoutLeadingZeros(std::string text) {
    text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 1));
    return text;
}

template <typename Options>
void AddRecordOptions(CLI::App& command, Options& options) {
    command.add_option("PORT", options.port, "Port, 0 where there is only one")->required();
    command.add_option("DATE", options.date, "Day of the record")
        ->required()
        ->transform([](const std::string& name) { return DayNamed(name, std::time(nullptr)); }, "")
        ->check(CheckDate, "YYYY-MM-DD|today|yesterday");
}

}  // namespace

void AddMainHistory(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<HistoryOptions>();
    CLI::App* command = parent.add_subcommand(
        "history", "Ask for the charging records of a port and print the answers, decoded, one line each");
    AddRecordOptions(*command, *options);
    command->add_option("HOUR", options->hour, "Hour, 24 for the whole day")
        ->capture_default_str()
        ->transform(WithoutLeadingZeros, "")
        ->check(CLI::Range(0, kWholeDay));
    AddSeconds(*command, "--seconds", options->seconds, "How long to wait for the queue and the answers");
    AddLineForm(*command, options->form);
    command->footer("Takes other messages to zor_main from the queue too, without printing them.");
    command->callback([options, &result] { result = AskForHistory(*options); });
}

void AddMainAck(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<AckOptions>();
    CLI::App* command = parent.add_subcommand(
        "ack", "Acknowledge the midnight record of a port, the only one that is resent");
    AddRecordOptions(*command, *options);
    command->add_option("RESULT", options->result, "ok: resend it no more; reject: resend nothing for now")
        ->required()
        ->check(CLI::IsMember({"ok", "reject"}));
    AddSeconds(*command, "--wait", options->wait, "Seconds to wait for the queue, and for room in it");
    command->callback([options, &result] { result = Acknowledge(*options); });
}
