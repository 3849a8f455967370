#include "bench/Station.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "System/AppFiles.h"
#include "points/LiveEntry.h"

namespace {

constexpr std::uint32_t kNever = 4000000000U;

// Points as a settings table would give them: 52 station-wide, then 70 of each port.
void AddSignals(std::list<YxPointRecord>& points) {
    constexpr int kStationWide = 52;
    constexpr int kPerPort = (kBenchPoints - kStationWide) / kBenchPorts;
    for (int i = 0; i < kBenchPoints; ++i) {
        YxPointRecord point{};
        std::snprintf(point.name, sizeof point.name, "Status point %d of the station", i);
        point.address = i + 1;
        point.pointNumber = i;
        if (i >= kStationWide) {
            point.port = (i - kStationWide) / kPerPort + 1;
            point.pointNumber = PortBase(point.port) + 98 + (i - kStationWide) % kPerPort;
        }
        points.push_back(point);
    }
}

void AddTelemetry(std::list<YcGroup>& groups) {
    constexpr int kPerPort = kBenchPoints / kBenchPorts + 1;
    groups.push_back({0, 1, 0, {}});
    for (int i = 0; i < kBenchPoints; ++i) {
        YcPointRecord point{};
        point.scale = 0.1F;
        point.pointNumber = PortBase(i / kPerPort + 1) + 70 + i % kPerPort;
        groups.front().points.push_back(point);
    }
}

}  // namespace

void CBenchRuntime::DropOutbound() {
    std::uint32_t code = 0;
    void* buffer = nullptr;
    while (m_outboundQueue->Pop(code, buffer) == 1) std::free(buffer);
}

void CBenchShm::SetSignal(int index, std::uint8_t state) {
    static_cast<std::uint8_t*>(getYx(index))[kYxState] = state;
}

BenchStation::BenchStation() {
    for (const char* file : {kEventFile, kHistoryFile}) std::remove(CAppPath(file).c_str());
    shm.ResetLiveValues();
    runtime.SetShmAccessor(&shm);
    runtime.m_chargerKind = kDcCharger;
    runtime.m_portCount = kBenchPorts;
    AddSignals(runtime.m_yxPoints);
    AddTelemetry(runtime.m_ycGroups);
    runtime.m_walk.changes.reserve(runtime.m_yxPoints.size());
    runtime.SelectReportedPoints();
    runtime.m_sendflag = 1;
    runtime.m_workReportTicks = runtime.m_idleReportTicks = runtime.m_yxReportTicks = kNever;
    runtime.InitSOE();
    runtime.InitYcHistoryDatabase();
    runtime.SchedulerTick();
    runtime.SchedulerTick();  // the first one recorded and reported what was on
    runtime.DropOutbound();
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
