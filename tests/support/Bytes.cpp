#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <sstream>

Bytes Hex(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (unsigned byte = 0; words >> std::hex >> byte;) bytes.push_back(static_cast<std::uint8_t>(byte));
    return bytes;
}

std::string ToHex(const void* data, std::size_t length) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, i == 0 ? "%02x" : " %02x", bytes[i]);
        text += digits;
    }
    return text;
}

Captured Capture(const std::function<void()>& run) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    run();
    return {testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

std::string Plain(const std::string& output) {
    static const std::regex head("\033\\[1;32;40m(\\w+)\\.[0-9]+: "), number("(Line): [0-9]+, ");
    static const std::regex lineBreak("\n\033\\[0m\r\n"), end("\033\\[0m\r\n");
    std::string plain = std::regex_replace(std::regex_replace(output, head, "$1: "), number, "$1.#, ");
    return std::regex_replace(std::regex_replace(plain, lineBreak, "⏎\n"), end, "\n");
}

std::vector<std::vector<std::string>> Table(const std::string& lines) {
    static const std::regex bar(" *\\| *");
    std::vector<std::vector<std::string>> table;
    std::istringstream input(lines);
    for (std::string line; std::getline(input, line);)
        if (!line.empty())
            table.emplace_back(std::sregex_token_iterator(line.begin(), line.end(), bar, -1),
                               std::sregex_token_iterator());
    return table;
}

std::string Texts(const std::string& plain, const std::string& operation) {
    std::string texts;
    std::istringstream input(plain);
    for (std::string line; std::getline(input, line);) {
        if (line.rfind(operation + ": ", 0) != 0) continue;
        texts += (texts.empty() ? "" : ";") +
                 line.substr(operation.size() + 2, line.rfind("⏎") - operation.size() - 2);
    }
    return texts;
}
