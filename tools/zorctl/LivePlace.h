// Where a live value lies, as the command line names it.
#pragma once

#include <CLI/CLI.hpp>

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
