// From start to the end of the first pass, with a history of a year.
#include <filesystem>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"
#include "app/MainLoop.h"
#include "app/StartUp.h"
#include "bench/HistoryStation.h"
#include "bench/Operation.h"
#include "points/PointSettings.h"

namespace {

// Leaves the databases that a start finds.
struct StoppedStation : HistoryStation {
    StoppedStation() : HistoryStation(365) {
        if (!std::filesystem::exists(AppFile(kConfigFile))) MakeConfig(kBenchPorts);
    }
};

void FirstPass(benchmark::State& state) {
    StoppedStation files;
    for (auto run : state) {
        CShmCTRL shm;
        CTestRuntime runtime;
        std::uint8_t counter = 0;
        runtime.SetShmAccessor(&shm);
        StartUp(runtime);
        RunPass(runtime, counter);
        Require(runtime.m_yxPoints.size() == kBenchPoints, "the station has other points than it should");
    }
    Require(QueryNumber(AppFile(kHistoryFile), "SELECT max(id) FROM tagYC") == files.Id(23, kBenchPorts),
            "the history was not kept");
}

// Opens the keyed file and reads it, reads all point rows, stores the events of the signals that are on.
void BareFiles(benchmark::State& state) {
    StoppedStation files;
    int signalsOn = 0;
    for (const YxPointRecord& point : files.runtime.m_yxPoints) signalsOn += point.current;
    for (auto run : state) {
        CSqliteDb config;
        config.Open(CAppPath(kConfigFile).c_str(), kBusyAtStartUpMs);
        config.Key(kConfigKey, kConfigKeyLength);
        CBareStatement(config, kSelectSystem).Run();
        InBareTransaction(kPointSettingFile, [](CSqliteDb& points) {
            for (const char* sql : {kSelectYxDc, kSelectYcDc}) CBareStatement(points, sql).Run();
        });
        StoreBareEvents(signalsOn);
    }
}

}  // namespace

Operations StartOperations() {
    return {{"start_to_first_pass", FirstPass, {"files and events", BareFiles}}};
}
