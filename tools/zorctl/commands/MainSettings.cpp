// zorctl main settings: switches reporting on or off and sets its intervals.
#include <CLI/CLI.hpp>
#include <memory>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/messages/CommandFrames.h"
#include "tools/zorctl/messages/MainChannel.h"

namespace {

struct SettingsOptions {
    ReportSettings settings;
    bool off = false;
    double wait = 0;
};

EExit SendSettings(const SettingsOptions& options) {
    ReportSettings settings = options.settings;
    settings.on = !options.off;
    return SendCommand(BuildSettingsFrame(settings), options.wait);
}

void AddInterval(CLI::App& command, const char* name, std::uint16_t& value, const char* help) {
    command.add_option(name, value, help)->capture_default_str();
}

}  // namespace

void AddMainSettings(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<SettingsOptions>();
    CLI::App* command = parent.add_subcommand("settings", "Send the report-settings command");
    auto* on = command->add_flag("--on", "Switch reporting on (the default)");
    command->add_flag("--off", options->off, "Switch reporting off")->excludes(on);
    ReportSettings& settings = options->settings;
    AddInterval(*command, "--work", settings.work, "Seconds between charging status reports");
    AddInterval(*command, "--idle", settings.idle, "Seconds between idle status reports");
    AddInterval(*command, "--snapshot", settings.snapshot, "Seconds between full signal snapshots");
    AddInterval(*command, "--long", settings.longInterval, "Minutes of the long interval");
    AddSeconds(*command, "--wait", options->wait, "Seconds to wait for the queue, and for room in it");
    command->callback([options, &result] { result = SendSettings(*options); });
}
