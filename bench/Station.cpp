#include "bench/Station.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "bench/Bare.h"
#include "bench/HistoryStation.h"
#include "points/Signals.h"

namespace {

constexpr std::uint32_t kNever = 4000000000U;
constexpr char kEmptyEventFile[] = "empty-soe.db";

// Settings that give a station of eight ports kBenchPoints of each kind: those of a port have a copy for
// every port.
void MakeSettings() {
    constexpr int kFirstYxOfPort = 99;
    constexpr int kFirstYcOfPort = 100;
    constexpr int kStationYx = 52;
    constexpr int kStationYc = 20;
    constexpr int kYxRows = kStationYx + (kBenchPoints - kStationYx) / kBenchPorts;
    constexpr int kYcRows = kStationYc + (kBenchPoints - kStationYc) / kBenchPorts;
    PointRows rows;
    for (int i = 0; i < kYxRows; ++i) {
        const int number = i < kStationYx ? i : i - kStationYx + kFirstYxOfPort;
        rows.yx.push_back("1,'signal',3," + std::to_string(number) + ",'true'," + std::to_string(number + 1) +
                          ",0");
    }
    for (int i = 0; i < kYcRows; ++i) {
        const int number = i < kStationYc ? i : i - kStationYc + kFirstYcOfPort;
        rows.yc.push_back("1,'value'," + std::to_string(number) + ",0,100,0.1,0,0,0");
    }
    MakePoints(rows);
}

}  // namespace

CBenchRuntime::Dropped CBenchRuntime::DropOutbound() {
    Dropped dropped{};
    std::uint32_t code = 0;
    void* buffer = nullptr;
    while (m_outboundQueue->Pop(code, buffer) == 1) {
        ++dropped.messages;
        dropped.bytes += static_cast<std::size_t>(GetLe(static_cast<const std::uint8_t*>(buffer), 2));
        std::free(buffer);
    }
    return dropped;
}

BenchStation::BenchStation() {
    namespace fs = std::filesystem;
    // Files are made once in a run: bringing them to the disk takes longer than most of what is measured.
    if (!fs::exists(AppFile(kPointSettingFile))) MakeSettings();
    if (!fs::exists(AppFile(kEmptyEventFile))) {
        runtime.InitSOE();
        fs::rename(AppFile(kEventFile), AppFile(kEmptyEventFile));
    }
    fs::copy_file(AppFile(kEmptyEventFile), AppFile(kEventFile), fs::copy_options::overwrite_existing);
    FakeClock::Set(FakeClock::kStart);
    live.ResetLiveValues();
    for (int port = 1; port <= kBenchPorts; port += 2) live.SetSignal(PortBase(port) + kSignalCharging, 1);
    runtime.SetShmAccessor(&live);
    runtime.m_chargerKind = kDcCharger;
    runtime.m_portCount = kBenchPorts;
    runtime.InitPointSettingYX();
    runtime.InitPointSettingYC();
    Require(runtime.m_yxPoints.size() == kBenchPoints && Telemetry().size() == kBenchPoints,
            "the station has other points than it should");
    runtime.m_sendflag = 1;
    runtime.m_workReportTicks = runtime.m_idleReportTicks = runtime.m_yxReportTicks = kNever;
    for (YxPointRecord& point : runtime.m_yxPoints) point.previous = live.Signal(point.pointNumber);
    runtime.SchedulerTick();
    runtime.SchedulerTick();  // the first one reported what was on
    runtime.DropOutbound();
}

void BenchStation::CleanUp() {
    for (const char* file :
         {kConfigFile, kPointSettingFile, kEmptyEventFile, kEventFile, kHistoryFile, kHistories})
        std::filesystem::remove_all(AppFile(file));
}

void BenchStation::FlipSignals() {
    for (const YxPointRecord& point : runtime.m_yxPoints)
        live.SetSignal(point.pointNumber, live.Signal(point.pointNumber) == 0 ? 1 : 0);
}

void BenchStation::StoreEventsSingly() {
    for (const YxPointRecord& point : runtime.m_yxPoints)
        runtime.InsertSOE(1, point.pointNumber, 0, point.name);
}

void BenchStation::ForgetReported(int port) {
    constexpr std::uint8_t kNoState = 0xFF;
    PortProgress& state = runtime.Port(port);
    PortSignals& signals = state.signals;
    state.lastStateCode = 0;
    std::fill(signals.lastReported.begin(), signals.lastReported.end(), kNoState);
    std::fill(std::begin(signals.lastGun), std::end(signals.lastGun), kNoState);
}

void BenchStation::MakeReportsDue() {
    constexpr std::uint32_t kFastReports = 18;  // the interval counts for what follows them
    runtime.m_workReportTicks = runtime.m_idleReportTicks = runtime.m_yxReportTicks = 0;
    for (int port = 1; port <= kBenchPorts; ++port) {
        runtime.Port(port).chargingReports = kFastReports;
        ForgetReported(port);
    }
}

CQuiet::CQuiet() : m_stdout(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

CQuiet::~CQuiet() {
    std::fflush(stdout);
    dup2(m_stdout, STDOUT_FILENO);
    close(m_stdout);
}
