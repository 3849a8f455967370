// zorctl at work: every file of tests/transcripts is a fresh station, the commands given there, and what they
// print and end with.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <numeric>
#include <regex>
#include <set>

#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"
#include "tests/support/Transcript.h"

namespace {

// What a transcript shows of bytes that a text file should not hold, and back.
std::string Unescaped(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text.compare(i, 2, "\\x") == 0 && i + 3 < text.size();
        bytes += escaped ? static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16)) : text[i];
        if (escaped) i += 3;
    }
    return bytes;
}

// Each line of `text` behind `prefix`.
std::string Lines(const std::string& prefix, const std::string& text) {
    std::string lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) lines += prefix + line + '\n';
    return std::regex_replace(lines, std::regex("\x1b"), "\\x1B");
}

Outcome CallWithInput(const std::string& line, const std::string& text) {
    std::istringstream input(text);
    std::streambuf* const before = std::cin.rdbuf(input.rdbuf());
    std::cin.clear();
    const Outcome outcome = Call(line);
    std::cin.rdbuf(before);
    return outcome;
}

Outcome Query(const std::string& file, std::string sql) {
    for (const auto& [word, statement] : {std::pair{"{create soe}", kCreateSoe},
                                          {"{create errors}", kCreateErrMsg},
                                          {"{create history}", kCreateYc}})
        if (sql == word) sql = statement;
    Outcome outcome{};
    for (const std::string& row : QueryRows(AppFile(file.c_str()), sql)) outcome.out += row + '\n';
    return outcome;
}

Outcome List(const std::string& directory) {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error))
        names.insert(entry.path().filename().string() + '\n');
    return {error ? 1 : 0, std::accumulate(names.begin(), names.end(), std::string()), ""};
}

Outcome Write(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return {};
}

Outcome Do(const std::string& command, const std::string& input) {
    std::istringstream words(command);
    std::string verb;
    std::string object;
    std::string rest;
    std::getline(std::getline(std::getline(words, verb, ' '), object, ' '), rest);
    if (verb == "zorctl") return CallWithInput(command.substr(verb.size()), input);
    if (verb == "query") return Query(object, rest);
    return verb == "list" ? List(object) : Write(object, input);
}

// The transcript again, with what its commands do now.
std::string Replay(std::istream& transcript) {
    std::string replayed;
    std::string line;
    std::getline(transcript, line);
    while (transcript) {
        const std::string head = line;
        std::string input;
        std::string shown;
        while (std::getline(transcript, line) && !line.empty() && line[0] == '|') {
            input += Unescaped(line.substr(std::min<std::size_t>(2, line.size()))) + '\n';
            shown += line + '\n';
        }
        if (head.empty() || head[0] == '#') replayed += head + '\n';
        if (head.empty() || head[0] != '$') continue;
        const std::string command = head.substr(head.find(' ') + 1);
        const Outcome outcome = Do(command, input);
        // How the library words a wrong use is its own affair.
        const bool isOurs = outcome.err.rfind("zorctl: ", 0) == 0;
        replayed += '$' + (outcome.exit == 0 ? "" : std::to_string(outcome.exit)) + ' ' + command + '\n' +
                    shown + Lines("", outcome.out) + (isOurs ? Lines("! ", outcome.err) : "");
    }
    return replayed;
}

class CTranscript : public CEmptyStationTest, public testing::WithParamInterface<std::string> {};

TEST_P(CTranscript, IsWhatHappens) {
    ExpectReplay(ZOR_TRANSCRIPTS + GetParam() + ".txt", Replay);
}

INSTANTIATE_TEST_SUITE_P(Zorctl, CTranscript,
                         testing::Values("csv", "decode", "init", "log", "names", "scenario", "use",
                                         "values"),
                         [](const auto& transcript) { return transcript.param; });

}  // namespace
