// zorctl play: a scenario, played against a running station.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "System/AppFiles.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/scenario/Player.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

struct PlayOptions {
    std::string file;
    std::string directory = kAppDirectory;
    double speed = 1.0;
    double wait = 0;
    bool loop = false;
    bool check = false;
    bool quiet = false;
    bool json = false;
};

// Moves the player on by the real clocks. False when a signal ended the play.
bool PlayInRealTime(CPlayer& player, CStopSignals& stop) {
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
        PlayMoment now{std::chrono::duration_cast<PlayTime>(std::chrono::steady_clock::now() - start), {}};
        clock_gettime(CLOCK_REALTIME, &now.wall);
        if (!player.Advance(now)) return true;
        if (stop.Pause()) return false;
    }
}

EExit PlayScenario(const PlayOptions& options, const Scenario& scenario) {
    CStopSignals stop;
    CMainChannel channel;
    if (!channel.Open(DeadlineIn(options.wait), stop)) return EExit::Failed;
    CBenchShm live;
    if (!live.IsOpen()) return Complain(live.WhyNot(""));
    CEventReader events(options.directory);
    CPlayLog log(options.json    ? EPlayOutput::ForPrograms
                 : options.quiet ? EPlayOutput::Results
                                 : EPlayOutput::All);
    do {
        CPlayer player(scenario, {live, channel, stop, events, log}, options.speed);
        const bool played = PlayInRealTime(player, stop);
        if (!log.Works()) return EExit::Failed;
        if (player.Failures() > 0)
            return Complain(options.file + ": " + std::to_string(player.Failures()) + " failed");
        if (!played) return options.loop ? EExit::Done : Complain(options.file + ": interrupted");
    } while (options.loop);
    return EExit::Done;
}

EExit Play(const PlayOptions& options) {
    std::string text;
    if (const std::string trouble = ReadWholeFile(options.file, text); !trouble.empty())
        return Complain(trouble);
    std::vector<std::string> faults;
    const Scenario scenario = ParseScenario(options.file, text, faults);
    if (faults.empty() && scenario.lines.empty()) faults.push_back(options.file + ": no action in it");
    for (const std::string& fault : faults) Complain(fault);
    if (!faults.empty()) return EExit::WrongUse;
    return options.check ? EExit::Done : PlayScenario(options, scenario);
}

}  // namespace

void AddPlay(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<PlayOptions>();
    CLI::App* command = parent.add_subcommand("play",
                                              "Play a scenario: live values, commands, and what has to come "
                                              "of them; takes every message to zor_main");
    command->add_option("FILE", options->file, "The scenario")->required();
    command
        ->add_option("--speed", options->speed,
                     "Offsets and ramps go by this many times as fast; the process keeps its own "
                     "times, and 'within' stays as it is")
        ->check(DecimalIn(0.001, 1000.0));
    command->add_flag("--loop", options->loop,
                      "Again and again, until Ctrl-C or a failure; the next round begins at once");
    command->add_option("--dir", options->directory, "Where the event database is")->capture_default_str();
    AddSeconds(*command, "--wait", options->wait, "Seconds to wait for the queue");
    command->add_flag("--check", options->check, "Only say whether FILE is a scenario");
    auto* quiet = command->add_flag("--quiet", options->quiet, "Only what came of the expectations");
    command->add_flag("--json", options->json, "One JSON object per line")->excludes(quiet);
    command->footer(
        std::string("Ends with 0 when all went as expected, 1 when something failed, 2 for a FILE that is "
                    "no scenario; of that nothing is played.\n\n") +
        kScenarioGrammar);
    command->callback([options, &result] { result = Play(*options); });
}
