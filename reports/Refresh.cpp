// What the reports are made from, read anew, and when they are due.
#include <cstring>

#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"

void CRuntimeData::FindReportedPoints() {
    m_places.clear();
    for (const YcGroup& group : m_ycGroups) m_places.emplace_back(group.points);
}

void CRuntimeData::RefreshYc() {
    if (m_sendflag != 1) return;
    const PortRange ports = PortsOf(m_portCount);
    auto places = m_places.cbegin();
    for (YcGroup& group : m_ycGroups) {
        for (YcPointRecord& point : group.points) {
            const LiveYc live = m_shm->Yc(point.pointNumber);
            point.previousRaw = point.currentRaw;
            std::memcpy(point.name, live.area, sizeof point.name);
            point.currentRaw = live.raw;
        }
        if (m_chargerKind != kDcCharger) continue;
        // Per group: a report holds the values of one group, and its counters run once for each.
        for (int port = ports.first; port <= ports.last; ++port) {
            Send_DC_A1_5(*places, port);
            Send_DC_A1_6(*places, port);
        }
        ++places;
    }
}

void CRuntimeData::PortStep(int port) {
    if (m_sendflag != 1) return;
    std::uint32_t& ticks = Port(port).snapshotTicks;
    // Compared before it is counted: a snapshot goes out every m_yxReportTicks + 1 ticks.
    if (ticks < m_yxReportTicks && m_forceYxReport != 1) {
        ++ticks;
    } else {
        ticks = 0;
        if (m_chargerKind != kAcCharger) Send_DC_A1_13(port);
        // The first port that sees it takes it; the others keep to their own counters.
        m_forceYxReport = 0;
    }
    if (m_chargerKind == kAcCharger) return;
    Send_DC_A1_11(port);
    Send_DC_A1_15(port);
}
