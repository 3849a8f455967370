// The one way to standard output and standard error: nothing that was read from a database, the shared
// memory, a message or a file commands a terminal.
#pragma once

#include <string>

// What the process ends with.
enum class EExit : int {
    Done = 0,
    Failed = 1,   // the command was understood, what it asks for failed
    WrongUse = 2  // the command line is wrong
};

// Prints `line`, printable, and a line break, at once: for whoever reads the other end of a pipe. False when
// standard output takes no more, which RunZorctl reports.
bool PrintLine(const std::string& line);

// Prints lines for programs as they are; what a terminal could take for a command is escaped where standard
// output is one, in JSON as JSON does.
bool PrintCsv(const std::string& lines);
bool PrintJson(const std::string& line);

// Prints "zorctl: " and the text, printable, as one line on standard error; returns EExit::Failed for the
// caller to pass on.
EExit Complain(const std::string& text);
EExit Complain(const char* format, ...) __attribute__((format(printf, 1, 2)));
