// A station at one moment, gathered without touching it.
#pragma once

#include <string>
#include <vector>

#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/station/PointCheck.h"
#include "tools/zorctl/station/Processes.h"
#include "tools/zorctl/station/QueueState.h"

struct PointCounts {
    int yx = 0;
    int yc = 0;
    PointFindings findings;
    std::string trouble;
};

struct LastEvent {
    std::string id;  // empty where there is none
    std::string time;
    std::string text;
    std::string trouble;
};

// Records that zor_main has not acknowledged.
struct PendingRows {
    struct Port {
        int port;
        int rows;
    };
    std::vector<Port> ports;  // those of the configuration
    std::string newest;       // time of the newest record, pending or not
    std::string trouble;
};

// A process that runs and does not serve the station.
struct IdleProcess {
    std::int32_t process;
    std::string why;
};

struct StationStatus {
    std::string directory;
    bool isFurnished = false;  // both databases that the process does not make are there and not empty
    // Process ids; more than one is as wrong as none. Where none is known to share this station, those that
    // may.
    std::vector<std::int32_t> runtimes;
    bool runtimesAreOurs = false;
    std::vector<IdleProcess> idle;
    std::vector<std::string> changed;  // files that the process reads at its start and that are others now
    QueueState queue;
    SharedSegmentState memory;
    std::vector<ProcessInfo> attached;  // to the memory, as far as this user may see
    int portCount = 0;
    std::string configurationTrouble;
    PointCounts points;
    LastEvent event;
    PendingRows pending;
};

StationStatus LookAtStation(const std::string& directory);

// One line each.
struct Verdict {
    std::vector<std::string> troubles;  // what is missing or wrong; empty for a station that works
    std::vector<std::string> notes;     // what may be otherwise than somebody thinks
    std::string advice;                 // what to do next
};
Verdict Judge(const StationStatus& status);
