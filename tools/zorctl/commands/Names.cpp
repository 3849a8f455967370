// zorctl names: what the shell offers where a command takes a name. Not in the help: nobody types it.
#include <CLI/CLI.hpp>
#include <memory>
#include <set>
#include <string>

#include "System/AppFiles.h"
#include "ipc/Messages.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/live/PointNames.h"

void AddNames(CLI::App& parent, EExit& result) {
    auto directory = std::make_shared<std::string>(kAppDirectory);
    CLI::App* names = parent.add_subcommand("names", "One name per line")->group("");
    names->require_subcommand(1);
    names->add_subcommand("messages")->callback([] {
        for (const MessageName& message : kMessages) PrintLine(message.name);
    });
    CLI::App* points = names->add_subcommand("points");
    points->add_option("DIR", *directory);
    points->callback([directory, &result] {
        CPointNames read;
        if (!read.Load(*directory).empty()) result = EExit::Failed;
        std::set<std::string> sorted;
        for (const NamedPoint& point : read.Points()) sorted.insert(point.name);
        for (const std::string& name : sorted) PrintLine(name);
    });
}
