// zorctl watch: a station as it lives, on the whole terminal.
#include <CLI/CLI.hpp>
#include <ctime>
#include <memory>
#include <string>

#include "System/AppFiles.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/watch/StationView.h"
#include "tools/zorctl/watch/Terminal.h"
#include "tools/zorctl/watch/ViewLayout.h"

namespace {

struct WatchOptions {
    std::string directory = kAppDirectory;
    double interval = 0.25;  // seconds
    bool take = false;
};

CTerminal::EWake WatchOn(CTerminal& terminal, const WatchOptions& options, CStopSignals& stop) {
    CStationView view(options.directory, options.take, stop);
    CDeadline next = DeadlineIn(0);
    for (CTerminal::EWake wake = CTerminal::EWake::Time;;) {
        std::timespec clock{};
        clock_gettime(CLOCK_REALTIME, &clock);
        const CMoment now = std::chrono::steady_clock::now();
        if (HasPassed(next)) {
            view.Look(now, clock);
            next = DeadlineIn(options.interval);
            wake = CTerminal::EWake::Changed;
        } else {
            view.FetchMessages(now, clock);
        }
        if (wake == CTerminal::EWake::Changed)
            terminal.Draw(LayOut(view.Picture(), terminal.Lines(), terminal.Columns()));
        wake = CTerminal::Wait(stop);
        if (wake == CTerminal::EWake::Quit || wake == CTerminal::EWake::Lost) return wake;
    }
}

EExit Watch(const WatchOptions& options) {
    CStopSignals stop;
    CTerminal terminal;
    if (const std::string trouble = terminal.Open(); !trouble.empty()) return Complain(trouble);
    return WatchOn(terminal, options, stop) == CTerminal::EWake::Quit ? EExit::Done : EExit::Failed;
}

}  // namespace

void AddWatch(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<WatchOptions>();
    CLI::App* command = parent.add_subcommand(
        "watch", "Show a station as it lives, on the whole terminal: ports, points, events, messages");
    command->add_option("DIR", options->directory, "Directory of the databases")->capture_default_str();
    command->add_option("--interval", options->interval, "Seconds between two looks")
        ->capture_default_str()
        ->check(DecimalIn(0.02, 60.0));
    command->add_flag("--take", options->take,
                      "Take the messages from the queue, as zor_main does, instead of copying them");
    command->footer(
        "What has changed in the last 3 s is shown in reverse. q and Ctrl-C end it, Ctrl-L draws it anew.\n"
        "Exit code 0, or 1 without a terminal and when the terminal goes away.\n"
        "Without --take a message that another process takes at once may be missed.");
    command->callback([options, &result] { result = Watch(*options); });
}
