// What happens per tick, in order.
#include "app/RuntimeData.h"

void CRuntimeData::SchedulerTick() {
    DetectStatusChanges();
    const PortRange ports = PortsOf(m_portCount);
    for (int port = ports.first; port <= ports.last; ++port) {
        PortStep(port);
        // A single port reports its state only as a DC charger; several ports do so whatever the kind.
        if (m_portCount > 1 || m_chargerKind == kDcCharger) Send_DC_A1_14(port);
    }
}

void CRuntimeData::PortStep(int port) {
    if (m_sendflag != 1) return;
    std::uint32_t& ticks = Port(port).snapshotTicks;
    // Compared before it is counted: a snapshot goes out every m_yxReportTicks + 1 ticks.
    if (ticks < m_yxReportTicks && m_forceYxReport != 1) {
        ++ticks;
        return;
    }
    ticks = 0;
    m_forceYxReport = 0;
}
