// A station at one moment, gathered without touching it.
#pragma once

#include <string>
#include <vector>

#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/station/Processes.h"
#include "tools/zorctl/station/QueueState.h"

struct PointCounts {
    int yx = 0;
    int yc = 0;
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
    // Process ids; more than one is as wrong as none. Where none is known to share this station, those that
    // may.
    std::vector<std::int32_t> runtimes;
    bool runtimesAreOurs = false;
    std::vector<IdleProcess> idle;
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

// What is missing or wrong, one line each; empty for a station that works.
std::vector<std::string> Troubles(const StationStatus& status);
