// Where a live value lies, as the command line names it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "System/AppFiles.h"
#include "points/PortNumbering.h"

// An index of a live table, or a point of port 1 and the port it is meant for.
struct LivePlace {
    int index = 0;
    int port = 0;

    int Index() const { return index + PortBase(port); }
};

// Adds INDEX and, for tables whose points are numbered per port, --port.
inline void AddPlace(CLI::App& command, LivePlace& place, bool perPort) {
    command.add_option("INDEX", place.index, "Index in the live table")
        ->required()
        ->check(CLI::Range(0, 0xFFFF));
    if (!perPort) return;
    command
        .add_option("--port", place.port,
                    "Take INDEX as a point of port 1 and use the same point of this port")
        ->check(CLI::Range(0, kMaxPorts));
}

// A point as the settings name it. The name is empty where the command line goes on with a table instead.
struct NamedPlace {
    std::string name;
    int port = 0;  // 0: the first
    std::string directory = kAppDirectory;
};

// Adds NAME, --port and --dir to a command that has a subcommand per table as well.
inline void AddNamedPlace(CLI::App& command, NamedPlace& place) {
    command.add_option("NAME", place.name, "A point by the name that the point settings give it");
    command.add_option("--port", place.port, "The copy of that point that belongs to this port")
        ->check(CLI::Range(1, kMaxPorts));
    command.add_option("--dir", place.directory, "Directory of the databases")->capture_default_str();
}
