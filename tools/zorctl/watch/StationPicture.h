// What the live view shows of a station at one moment, without a word about how.
#pragma once

#include <limits>
#include <string>
#include <vector>

// Seconds for which a change counts as fresh.
inline constexpr double kFreshSeconds = 3;
inline constexpr double kLongAgo = std::numeric_limits<double>::infinity();

// A text, and for how many seconds it has been the same.
struct Shown {
    std::string text;
    double age = kLongAgo;

    bool IsFresh() const { return age < kFreshSeconds; }
};

struct PortPicture {
    int port = 0;
    Shown state;  // code and name
    Shown gun;    // the gun signals that are on
    Shown voltage;
    Shown current;
    Shown charge;  // of the battery
    Shown energy;  // since charging began
    Shown meter;
};

struct PointPicture {
    int port;  // 0: of the whole station
    std::string name;
    Shown value;
};

// A list with the newest at its end, and what is to be said about it: mostly why it is empty.
struct ListPicture {
    std::vector<Shown> lines;
    std::string note;
};

struct StationPicture {
    std::string directory;
    std::string process;  // "zor_runtime 4711"
    std::string time;
    std::vector<PortPicture> ports;
    std::string portNote;  // why there are no ports, or no values
    std::vector<PointPicture> points;
    std::string pointNote;
    ListPicture events;
    ListPicture messages;
};
