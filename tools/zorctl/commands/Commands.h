// The subcommands of zorctl, one file each.
#pragma once

#include "tools/zorctl/text/Output.h"

namespace CLI {
class App;
}

// Runs the command line and returns the exit code. Output goes to stdout, complaints to stderr;
// output that could not be written makes the command fail.
int RunZorctl(int argc, const char* const* argv);

// Each adds its subcommand below `parent`. A chosen subcommand runs while the command line is parsed and
// leaves its result in `result`, which must outlive the parsing.
void AddInit(CLI::App& parent, EExit& result);
void AddExport(CLI::App& parent, EExit& result);
void AddSet(CLI::App& parent, EExit& result);
void AddGet(CLI::App& parent, EExit& result);
void AddLog(CLI::App& parent, EExit& result);
void AddPlay(CLI::App& parent, EExit& result);
void AddDecode(CLI::App& parent, EExit& result);
void AddStatus(CLI::App& parent, EExit& result);
void AddNames(CLI::App& parent, EExit& result);
void AddWatch(CLI::App& parent, EExit& result);
void AddMainListen(CLI::App& parent, EExit& result);
void AddMainSettings(CLI::App& parent, EExit& result);
void AddMainSend(CLI::App& parent, EExit& result);
void AddMainHistory(CLI::App& parent, EExit& result);
void AddMainAck(CLI::App& parent, EExit& result);
