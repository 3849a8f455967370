// A scenario: what happens around the process, line by line, as the player takes it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/messages/CommandFrames.h"

using PlayTime = std::chrono::microseconds;

// One live value; the index is the port's own place where the line named a port.
struct LiveTarget {
    ELiveTable table;
    int index;

    bool operator==(const LiveTarget& other) const { return table == other.table && index == other.index; }
};

struct LiveWrite {
    LiveTarget target;
    std::uint64_t value = 0;
    std::optional<LiveArea> area{};  // the free-form bytes of a telemetry entry, in place of its value
};
using LiveWrites = std::vector<LiveWrite>;

// A value that moves evenly and goes on beside the lines that follow.
struct Ramp {
    LiveTarget target;
    std::uint64_t from;
    std::uint64_t to;
    PlayTime over;
};

struct HistoryRequest {
    std::uint8_t port;
    std::string day;  // a date, "today" or "yesterday", found when the line is played
    std::uint8_t hour;
};

struct Acknowledgement {
    std::uint8_t port;
    std::string day;  // a date, "today" or "yesterday", found when the line is played
    bool accepted;
};

struct Remark {
    std::string text;
};

struct WantedField {
    std::string name;
    std::string value;  // a text to equal, or "LOW..HIGH" for a number
};

// What has to come, or must not, in the time after the line.
struct Expectation {
    bool wanted;                        // false: it must not come
    std::optional<std::uint16_t> code;  // of a message; without one it is an event
    std::string eventText;              // part of the event's text
    std::vector<WantedField> fields;
    PlayTime within;
};

using Action =
    std::variant<LiveWrites, Ramp, ReportSettings, HistoryRequest, Acknowledgement, Remark, Expectation>;

struct ScenarioLine {
    int number = 0;    // in the file, from 1
    std::string text;  // the action as it was written
    // Set for "at HH:MM:SS": the second of the local day at which the line is due. Offsets count from it on.
    std::optional<int> secondOfDay;
    PlayTime offset{0};  // since the last such line, or since the start
    Action action;
};

struct Scenario {
    std::string file;
    std::vector<ScenarioLine> lines;
};

// Reads the text of `file`. Every line that cannot be understood adds "FILE:LINE:COLUMN: what is wrong" to
// `faults`; with a fault the scenario is not to be played.
Scenario ParseScenario(const std::string& file, const std::string& text, std::vector<std::string>& faults);

// The grammar, for people.
extern const char kScenarioGrammar[];
