// zorctl decode: frames in hexadecimal from standard input, decoded as main listen prints them.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "ipc/Frame.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/messages/MessageLines.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

// What `main listen --hex` puts in front of a frame goes in front of its decoded line: a first word of
// what makes up a time and with what no bytes have.
std::string TimeIn(const std::string& line) {
    const std::string word = line.substr(0, line.find(' '));
    const bool isTime = word.find_first_not_of("0123456789:.-T+") == std::string::npos &&
                        word.find_first_of(":+") != std::string::npos;
    return isTime ? word : "";
}

// False with a line on standard error for a line that is no frame.
bool ReadFrame(const std::string& line, std::size_t start, unsigned long number,
               std::vector<std::uint8_t>& frame) {
    const std::string where = "line " + std::to_string(number) + ": ";
    const std::size_t fault = start + ReadHex(line.substr(start), frame);
    if (fault < line.size())
        Complain(where + "no pair of hexadecimal digits at column " + std::to_string(fault + 1));
    else if (frame.size() > kFrameCapacity)
        Complain(where + std::to_string(frame.size()) + " bytes, a frame has " +
                 std::to_string(kFrameCapacity) + " at the most");
    else
        return true;
    return false;
}

EExit DecodeInput(bool json) {
    EExit result = EExit::Done;
    std::string line;
    for (unsigned long number = 1; std::getline(std::cin, line); ++number) {
        line.resize(std::min(line.find('#'), line.size()));
        if (Trimmed(line).empty()) continue;
        const std::string time = TimeIn(line);
        std::vector<std::uint8_t> frame;
        if (!ReadFrame(line, time.size(), number, frame)) {
            result = EExit::Failed;
            continue;
        }
        const LineHead head{time, {}, ""};
        const DecodedFrame decoded = DecodeFrame(frame.data(), frame.size());
        if (json ? !PrintJson(AsJson(head, decoded)) : !PrintLine(TextLine(head, decoded)))
            return EExit::Failed;
    }
    if (std::ferror(stdin) != 0) return Complain(std::string("standard input: ") + std::strerror(errno));
    return result;
}

}  // namespace

void AddDecode(CLI::App& parent, EExit& result) {
    auto json = std::make_shared<bool>(false);
    CLI::App* command = parent.add_subcommand(
        "decode", "Decode frames to zor_main from standard input, one a line in hexadecimal");
    command->add_flag("--json", *json, "One JSON object per line");
    command->footer(
        "Takes the lines of 'main listen --hex', time stamps and all; '#' begins a comment.\n"
        "A line that is no frame is named on standard error, the others are decoded: exit code 1.");
    command->callback([json, &result] { result = DecodeInput(*json); });
}
