#include "tools/zorctl/text/Output.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "tools/zorctl/text/PlainText.h"

namespace {

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

bool IsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

}  // namespace

bool PrintLine(const std::string& line) {
    return Print(Printable(line) + '\n');
}

bool PrintCsv(const std::string& lines) {
    return Print(IsTerminal() ? Printable(lines, EEscape::BytesInLines) : lines);
}

bool PrintJson(const std::string& line) {
    return Print((IsTerminal() ? Printable(line, EEscape::Json) : line) + '\n');
}

EExit Complain(const std::string& text) {
    std::fprintf(stderr, "zorctl: %s\n", Printable(text).c_str());
    return EExit::Failed;
}

EExit Complain(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    std::vector<char> text(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, arguments)) + 1);
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    va_end(arguments);
    return Complain(std::string(text.data()));
}
