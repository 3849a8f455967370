// A station for the benchmarks: a runtime object with full point lists, and live values that move.
#pragma once

#include <cstdint>
#include <memory>

#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"

inline constexpr int kBenchPorts = 8;
inline constexpr int kBenchPoints = 612;  // of each kind

class CBenchRuntime : public CRuntimeData {
  public:
    using CRuntimeData::m_chargerKind;
    using CRuntimeData::m_datacache;
    using CRuntimeData::m_idleReportTicks;
    using CRuntimeData::m_outboundQueue;
    using CRuntimeData::m_portCount;
    using CRuntimeData::m_sendflag;
    using CRuntimeData::m_walk;
    using CRuntimeData::m_workReportTicks;
    using CRuntimeData::m_ycGroups;
    using CRuntimeData::m_yxPoints;
    using CRuntimeData::m_yxReportTicks;
    using CRuntimeData::RefreshYc;

    // Takes everything that waits for zor_main away.
    void DropOutbound();
};

class CBenchShm : public CShmCTRL {
  public:
    void SetSignal(int index, std::uint8_t state);
};

// Keeps the diagnostic lines of the code under test out of the table, for as long as it lives.
class CQuiet {
  public:
    CQuiet();
    ~CQuiet();
    CQuiet(const CQuiet&) = delete;
    CQuiet& operator=(const CQuiet&) = delete;

  private:
    int m_stdout;
};

// Eight ports, 612 status and 612 telemetry points, reporting on, every interval longer than any benchmark.
// Its files are in the application directory, which is emptied first.
struct BenchStation {
    BenchStation();

    CQuiet quiet;  // first, so that it outlasts the others
    CBenchShm shm;
    CBenchRuntime runtime;
};
