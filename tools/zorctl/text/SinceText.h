// Points in time as a command line gives them.
#pragma once

#include <string>

// Turns a local date, a date and time, or a span back from now ("90s", "10m", "2h", "3d") into the form, or
// the beginning of the form, in which the databases store times, so that texts compare. False for anything
// else.
bool SinceText(const std::string& given, std::string& since);
