#include "tools/zorctl/text/Output.h"

#include <unistd.h>

#include <cstdio>

namespace {

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

}  // namespace

bool PrintLine(const std::string& line) {
    return Print(Printable(line) + '\n');
}

bool PrintData(const std::string& lines, EEscape how) {
    return Print(isatty(STDOUT_FILENO) != 0 ? Printable(lines, how) : lines);
}

EExit Complain(const std::string& text) {
    std::fprintf(stderr, "zorctl: %s\n", Printable(text).c_str());
    return EExit::Failed;
}
