// The report-settings command, built as zor_main builds it.
#pragma once

#include <cstdint>

#include "ipc/Frame.h"

// Defaults are the intervals that the process starts with.
struct ReportSettings {
    bool on = true;
    std::uint16_t work = 180;         // seconds between charging status reports
    std::uint16_t idle = 180;         // seconds between idle status reports
    std::uint16_t snapshot = 60;      // seconds between full signal snapshots
    std::uint16_t longInterval = 60;  // minutes
};

// `work` and `idle` go into the fields of both kinds of charger: the one that it is picks its own.
Frame BuildSettingsFrame(const ReportSettings& settings);
