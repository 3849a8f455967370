// Which points the signal reports of a port carry.
#include <map>
#include <utility>

#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/SignalBodies.h"

namespace {

// A last-reported byte belongs to a point number in one of three ranges; station-wide points keep one for
// each port.
enum class ERange : std::uint8_t { None, Station, Port, SecondTable };

ERange RangeOf(const YxPointRecord& record, int port) {
    if (record.source == kSourceYx2) return record.port == port ? ERange::SecondTable : ERange::None;
    if (record.source != kSourceYx) return ERange::None;
    if (record.pointNumber < kFirstPortSignal) return ERange::Station;
    return record.port == port ? ERange::Port : ERange::None;
}

ESummary SummaryOf(ERange range, std::int64_t number) {
    if (range == ERange::Station) {
        if (number == kSignalEmergencyStop) return ESummary::SetsA;
        if (number == kSignalStationAlarm) return ESummary::SetsB;
    }
    if (range == ERange::Port) {
        if (number == kSignalPortFault) return ESummary::RaisesA;
        if (number == kSignalPortAlarm) return ESummary::RaisesB;
    }
    return ESummary::None;
}

}  // namespace

PortSignals SelectSignals(const std::list<YxPointRecord>& list, int port) {
    PortSignals signals;
    std::map<std::pair<ERange, std::int64_t>, std::uint32_t> slots;
    for (const YxPointRecord& record : list) {
        const std::int64_t ofPort = std::int64_t{record.pointNumber} - PortBase(port);
        // By its number alone: a copy that was made for another port can carry this port's gun point.
        if (record.source == kSourceYx && ofPort >= kSignalGunConnected && ofPort <= kSignalControl)
            signals.gunPoints.push_back({&record, static_cast<std::uint8_t>(ofPort - kSignalGunConnected)});

        const ERange range = RangeOf(record, port);
        if (range == ERange::None) continue;
        const std::int64_t number = range == ERange::Station ? record.pointNumber : ofPort;
        std::uint32_t slot = SelectedPoint::kNoSlot;
        if (record.address != 0)
            slot = slots.emplace(std::pair(range, number), static_cast<std::uint32_t>(slots.size()))
                       .first->second;
        signals.points.push_back({&record, slot, SummaryOf(range, number)});
    }
    signals.lastReported.resize(slots.size());
    return signals;
}
