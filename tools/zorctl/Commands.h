// The subcommands of zorctl, one file each.
#pragma once

namespace CLI {
class App;
}

// What the process ends with.
enum class EExit : int {
    Done = 0,
    Failed = 1,   // the command was understood, what it asks for failed
    WrongUse = 2  // the command line is wrong
};

// Runs the command line and returns the exit code. Output goes to stdout, complaints to stderr;
// output that could not be written makes the command fail.
int RunZorctl(int argc, const char* const* argv);

// Prints "zorctl: " and the text as one line on standard error; returns EExit::Failed for the caller to pass
// on.
EExit Complain(const char* format, ...) __attribute__((format(printf, 1, 2)));

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
void AddWatch(CLI::App& parent, EExit& result);
void AddMainListen(CLI::App& parent, EExit& result);
void AddMainSettings(CLI::App& parent, EExit& result);
void AddMainSend(CLI::App& parent, EExit& result);
void AddMainHistory(CLI::App& parent, EExit& result);
void AddMainAck(CLI::App& parent, EExit& result);
