// What the fuzz targets share: their entry, findings, and a station to try inputs on.
#pragma once

#include <cshm.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "System/Sqlite.h"
#include "tests/support/TestRuntime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Makes the input a finding, told as `what`, unless `holds`.
void Require(bool holds, const char* what);

// The process's station in its sandbox, the same for every input: reporting is on, every report due.
struct FuzzStation {
    static FuzzStation& WithPorts(unsigned ports);
    FuzzStation();
    // Back to the first state; what an input has allocated is free then, so that a leak shows.
    void Clear();
    // An entry of the segment, to write to; null outside the table.
    std::uint8_t* Entry(const CShmLayout::Table& table, int index);
    void Tick();
    // Takes everything that is posted, which has to be what zor_main can read.
    void CheckPosted();

    CLiveValues live;
    CTestRuntime runtime;
    CSqliteDb events;
    CSqliteDb history;
    std::vector<std::pair<std::uint8_t*, std::size_t>> touched;  // entries
};
