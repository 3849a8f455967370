// Files of tests/transcripts: what is done, and what comes of it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>

// Output with masked diagnostic lines as "Operation: text" shows them; what the end of a line would hide
// stands out.
inline std::string ShownLines(const std::string& masked) {
    static const std::regex line("\033\\[1;32;40m(\\w+)\\.#: ([^\033]*)\033\\[0m\r\n");
    std::string shown = std::regex_replace(masked, std::regex("\n\033\\[0m\r\n"), "\\n\033[0m\r\n");
    shown = std::regex_replace(shown, line, "$1: $2\n");
    return std::regex_replace(shown, std::regex(" \n"), "\\x20\n");
}

// Expects that `replay`, which reads the transcript in the file `path`, gives the same text again. Where it
// does not, what it gave is left in the working directory, "<name>.replayed".
inline void ExpectReplay(const std::string& path, const std::function<std::string(std::istream&)>& replay) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    ASSERT_FALSE(text.str().empty()) << path;
    std::istringstream transcript(text.str());
    const std::string replayed = replay(transcript);
    EXPECT_EQ(text.str(), replayed);
    if (text.str() == replayed) return;
    std::ofstream(std::filesystem::path(path).stem().string() + ".replayed") << replayed;
}
