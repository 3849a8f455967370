// What happens per tick, in order.
#include <sys/stat.h>

#include <cstring>
#include <ctime>

#include "System/DateTime.h"
#include "app/RuntimeData.h"
#include "history/HistoryDatabase.h"
#include "points/ShmCtrl.h"

void CRuntimeData::SchedulerTick() {
    FollowTimeZone();
    m_eventWait.Renew();
    m_historyWait.Renew();
    DetectStatusChanges();
    HourlyStep();
    RefreshYc();
    History_A1_16();
    const PortRange ports = PortsOf(m_portCount);
    for (int port = ports.first; port <= ports.last; ++port) {
        PortStep(port);
        // A single port reports its state only as a DC charger; several ports do so whatever the kind.
        if (m_portCount > 1 || m_chargerKind == kDcCharger) Send_DC_A1_14(port);
    }
}

// Dates do not look at the zone by themselves (see CDateTime), and looking costs memory whenever the zone is
// that of the system: so once a second, and only after its file has changed.
void CRuntimeData::FollowTimeZone() {
    const std::time_t second = std::time(nullptr);
    if (second == m_lastZoneSecond) return;
    m_lastZoneSecond = second;
    struct stat file {};
    const ZoneFile now = stat("/etc/localtime", &file) == 0
                             ? ZoneFile{file.st_dev, file.st_ino, file.st_mtim.tv_sec, file.st_mtim.tv_nsec}
                             : ZoneFile{};
    if (now == m_zoneFile) return;
    m_zoneFile = now;
    tzset();
}

bool CRuntimeData::HasWaited() const {
    constexpr int kShortWaitMs = 200;
    return m_eventWait.WaitedMs() + m_historyWait.WaitedMs() > kShortWaitMs;
}

void CRuntimeData::HourlyStep() {
    constexpr int kCacheCheckMinute = 40;
    constexpr int kLatestSecond = kHourAnswerEnd / 2;
    const CDateTime now = CDateTime::Now();
    // Two files that are locked at once would hold the loop twice as long. A record that came later than this
    // would not be found for its hour.
    if (HasWaited() && now.Second() < kLatestSecond) return;
    const int hour = now.Hour();
    if (hour != m_lastHour && now.Minute() == 0) {
        m_lastHour = hour;
        RecordHour(static_cast<std::uint32_t>(hour));
    }
    if (hour != m_lastCacheHour && now.Minute() == kCacheCheckMinute) {
        m_lastCacheHour = hour;
        Checkcache();
    }
}

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
