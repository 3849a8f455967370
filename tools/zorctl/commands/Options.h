// Options that several commands have.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "System/AppFiles.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/messages/MessageLines.h"

// Lets a decimal number from `least` to `most` through; unlike CLI::Range, not the number that is none.
CLI::Validator DecimalIn(double least, double most);

// Hexadecimal digits for `least` to `most` bytes.
CLI::Validator HexBytes(std::size_t least, std::size_t most);

// A time in seconds, 0 or more.
void AddSeconds(CLI::App& command, const char* name, double& seconds, const char* help);

// --json, --hex and --time, which fill `form`.
void AddLineForm(CLI::App& command, LineForm& form);

// A table of the shared memory whose entries are one number each, as `set` and `get` take it.
struct LiveKind {
    ELiveTable table;
    const char* help;
    const char* value;      // what the number is
    const char* valueHelp;  // of the argument
    std::uint64_t most;
};
inline constexpr LiveKind kLiveKinds[] = {
    {ELiveTable::Yx, "A status point", "state", "on, off or a number", UINT8_MAX},
    {ELiveTable::Yx2, "A status point of the second table", "state", "on, off or a number", UINT8_MAX},
    {ELiveTable::Dd, "An energy counter, in units of 1/10000", "value", "In units of 1/10000", UINT64_MAX},
    {ELiveTable::Gun, "The gun state of a port", "state", "Gun state", UINT8_MAX},
};

// An index of a live table, or a point of port 1 and the port it is meant for.
struct LivePlace {
    int index = 0;
    int port = 0;

    int Index() const { return index + PortBase(port); }
};

// Adds INDEX, or PORT for a gun state, and --port for tables whose points are numbered per port.
void AddPlace(CLI::App& command, ELiveTable table, LivePlace& place);

// A point as the settings name it. The name is empty where the command line goes on with a table instead.
struct NamedPlace {
    std::string name;
    int port = 0;  // 0: the first
    std::string directory = kAppDirectory;
};

// Adds NAME, --port and --dir to a command that has a subcommand per table as well.
void AddNamedPlace(CLI::App& command, NamedPlace& place);
