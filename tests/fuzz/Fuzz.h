// What the fuzz targets share: their entry, findings, and a station to try inputs on.
#pragma once

#include <cshm.h>

#include <cstddef>
#include <cstdint>

#include "System/Sqlite.h"
#include "tests/support/TestRuntime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Makes the input a finding, told as `what`, unless `holds`.
void Require(bool holds, const char* what);

// The process's station in its sandbox, the same for every input: reporting is on, every report due.
struct FuzzStation {
    // In its first state, but with so many ports; what the last input has allocated is free.
    static FuzzStation& WithPorts(unsigned ports);
    FuzzStation();
    // The segment, byte by byte.
    std::uint8_t* Segment() { return static_cast<std::uint8_t*>(live.getYc(0)) - CShmLayout::kYc.offset; }
    void Tick();
    // Takes everything that is posted, which has to be what zor_main can read.
    void CheckPosted();

    CLiveValues live;
    CTestRuntime runtime;
    CSqliteDb events;
    CSqliteDb history;
};
