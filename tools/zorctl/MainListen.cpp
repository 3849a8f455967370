// zorctl main listen: every message of the process, decoded, one line each.
#include <CLI/CLI.hpp>
#include <memory>

#include "tools/zorctl/Commands.h"
#include "tools/zorctl/MainChannel.h"
#include "tools/zorctl/TakenMessage.h"

namespace {

struct ListenOptions {
    bool json = false;
    unsigned long count = 0;  // 0: no end
    double seconds = -1;      // negative: no end
};

EExit Listen(const ListenOptions& options) {
    CStopSignals stop;
    const CDeadline deadline = DeadlineIn(options.seconds);
    CMainChannel channel;
    if (!channel.Open(deadline, stop)) return EExit::Failed;
    unsigned long seen = 0;
    SysVMessage message{};
    for (std::size_t length = 0; options.count == 0 || seen < options.count;) {
        const int got = channel.Receive(message, length);
        if (got < 0) return EExit::Failed;
        if (got > 0) {
            ++seen;
            if (!Print(TakeApart(message, length), options.json)) return EExit::Failed;
            // Nothing to wait for, but a steady stream of messages ends in time all the same. With 0 seconds
            // everything that waits is read.
            if (options.seconds <= 0 || !HasPassed(deadline)) continue;
        }
        if (!HasPassed(deadline) && !stop.Pause()) continue;
        if (options.count == 0) break;
        return Complain("%lu of %lu messages came", seen, options.count);
    }
    return EExit::Done;
}

}  // namespace

void AddMainListen(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<ListenOptions>();
    CLI::App* command = parent.add_subcommand(
        "listen", "Take every message to zor_main from the queue and print it, decoded, one line each");
    command->add_flag("--json", options->json, "One JSON object per line");
    command->add_option("--count", options->count, "End after this many messages; exit code 1 if fewer came")
        ->check(CLI::Range(1UL, 1'000'000'000UL));
    command
        ->add_option("--seconds", options->seconds,
                     "End after this time, 0 with what is there; waiting for the queue counts")
        ->check(CLI::Range(0.0, 1e9));
    command->footer("Waits for the queue where there is none yet. Ctrl-C ends it.");
    command->callback([options, &result] { result = Listen(*options); });
}
