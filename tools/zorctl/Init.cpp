// zorctl init: the databases that a station has before the process starts.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "System/AppFiles.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/Commands.h"
#include "tools/zorctl/StationFiles.h"

namespace {

struct InitOptions {
    std::string directory;
    int ports = 1;
    bool force = false;
};

EExit Init(const InitOptions& options) {
    namespace fs = std::filesystem;
    const fs::path directory(options.directory);
    const std::string config = (directory / kConfigFile).string();
    const std::string points = (directory / kPointSettingFile).string();
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) return Complain("%s: %s", options.directory.c_str(), error.message().c_str());
    for (const std::string& path : {config, points})
        if (!options.force && fs::exists(path, error))
            return Complain("%s is there already; --force replaces it", path.c_str());

    for (const std::string& trouble :
         {WriteConfiguration(config, options.ports), WritePointSettings(points, options.ports)})
        if (!trouble.empty()) return Complain("%s", trouble.c_str());
    std::printf("%s\n%s\n", config.c_str(), points.c_str());
    return EExit::Done;
}

}  // namespace

void AddInit(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<InitOptions>();
    CLI::App* command = parent.add_subcommand(
        "init", "Write the configuration and point-settings databases of a plausible station into DIR");
    command->add_option("DIR", options->directory, "Directory, made where it is missing")->required();
    command->add_option("--ports", options->ports, "Number of charging ports")
        ->required()
        ->check(CLI::Range(1, kMaxPorts));
    command->add_flag("--force", options->force, "Replace files that are there");
    command->callback([options, &result] { result = Init(*options); });
}
