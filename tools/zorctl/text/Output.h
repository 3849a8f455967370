// The one way to standard output and standard error: nothing that was read from a database, the shared
// memory, a message or a file commands a terminal.
#pragma once

#include <string>

#include "tools/zorctl/text/PlainText.h"

// What the process ends with.
enum class EExit : int {
    Done = 0,
    Failed = 1,   // the command was understood, what it asks for failed
    WrongUse = 2  // the command line is wrong
};

// Prints `line`, printable, and a line break, at once: for whoever reads the other end of a pipe. False when
// standard output takes no more, which RunZorctl reports.
bool PrintLine(const std::string& line);

// Prints lines for programs as they are; where standard output is a terminal, `how` says what of them is
// escaped.
bool PrintData(const std::string& lines, EEscape how);

// Prints "zorctl: " and `text`, printable, as one line on standard error; returns EExit::Failed for the
// caller to pass on.
EExit Complain(const std::string& text);
