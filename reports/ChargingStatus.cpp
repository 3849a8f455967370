#include "reports/ChargingStatus.h"

#include <algorithm>
#include <cstring>

#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"
#include "reports/PortState.h"

void PutEquipment(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutReversed(body, field.at, source.shm.EquipmentNumber().data());
}

void PutPort(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, static_cast<std::uint32_t>(source.port));
}

void PutStateCode(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    // This report does not look at the port's own fault point; A1_14 does.
    CShmCTRL& shm = source.shm;
    const bool fault = shm.Signal(kSignalStationFault) != 0 || shm.Signal(kSignalEmergencyStop) != 0;
    PutField(body, field.at, ChargingStateCode(fault, shm.GunState(source.port), kUnknownIsNoCode));
}

void PutNothing(std::uint8_t* /*body*/, const ChargingField& /*field*/, const ChargingSource& /*source*/) {}

void PutPortSignal(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, source.shm.Signal(PortBase(source.port) + field.number));
}

void PutStationSignal(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, source.shm.Signal(field.number));
}

void PutYc(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, field.convert(*source.point));
}

void PutYcBytes(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    std::uint8_t bytes[kYcAreaSize];
    std::memcpy(bytes, source.point->name, sizeof bytes);
    PutReversed(body, field.at, bytes);
}

void PutAreaKind(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, source.area[0]);
}

void PutVehicleIdentity(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    switch (source.area[0]) {  // any other kind has none
        case 1:
            return PutReversed(body, field.at, source.area + 166);
        case 3:
        case 5:
            return PutReversed(body, field.at, source.area + 182);
        case 4:
            return PutReversed(body, field.at, source.area + 174);
        default:
            return;
    }
}

void PutAreaBytes(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutReversed(body, field.at, source.area + field.number);
}

void PutCounter(std::uint8_t* body, const ChargingField& field, const ChargingSource& source) {
    PutField(body, field.at, source.shm.Counter(CounterBase(source.port) + field.number));
}

namespace {

// Highest number of a point that a field shows, above the port's base.
constexpr int LastPointShown() {
    int last = 0;
    for (const ChargingField& field : kChargingFields)
        if (field.ShowsPoint() && field.number > last) last = field.number;
    return last;
}

void SetPlace(std::vector<ChargingPlace>& places, const ChargingField& field, const YcPointRecord& point) {
    const auto same = std::find_if(places.begin(), places.end(),
                                   [&field](const ChargingPlace& place) { return place.field == &field; });
    if (same != places.end())
        same->point = &point;
    else
        places.push_back({&field, &point});
}

}  // namespace

GroupPlaces::GroupPlaces(const std::list<YcPointRecord>& points) {
    constexpr int kLast = LastPointShown();
    for (const YcPointRecord& point : points) {
        if (point.pointNumber == kYcIdleVoltage) voltage = &point;
        if (point.pointNumber == kYcIdleCurrent) current = &point;
        for (int port = 0; port < kPortSlots; ++port) {
            const std::int64_t ofPort = std::int64_t{point.pointNumber} - PortBase(port);
            if (ofPort < 0 || ofPort > kLast) continue;
            for (const ChargingField& field : kChargingFields)
                if (field.ShowsPoint() && field.number == ofPort)
                    SetPlace(charging[static_cast<std::size_t>(port)], field, point);
        }
    }
}

ChargingBody BuildChargingBody(CShmCTRL& shm, const GroupPlaces& places, int port) {
    ChargingBody body{};
    const auto area = shm.ChargingArea(port);
    ChargingSource source{shm, port, area.data(), nullptr};
    for (const ChargingField& field : kChargingFields)
        if (!field.ShowsPoint()) field.put(body.data(), field, source);
    for (const ChargingPlace& place : places.charging[static_cast<std::size_t>(port)]) {
        source.point = place.point;
        place.field->put(body.data(), *place.field, source);
    }
    return body;
}

void CRuntimeData::Send_DC_A1_5(const GroupPlaces& places, int port) {
    constexpr std::uint32_t kFastReports = 18;  // a charging begins with this many, in quick succession
    constexpr std::uint32_t kFastTicks = 100;
    PortProgress& state = Port(port);
    if (m_shm->Signal(PortBase(port) + kSignalCharging) == 0) {
        state.chargingTicks = 0;
        state.chargingReports = 0;
        return;
    }
    const std::uint32_t interval = state.chargingReports >= kFastReports ? m_workReportTicks : kFastTicks;
    if (interval > state.chargingTicks) {
        ++state.chargingTicks;
        return;
    }
    ++state.chargingReports;
    state.chargingTicks = 0;
    const ChargingBody body = BuildChargingBody(*m_shm, places, port);
    CDiagLine(__func__).Dump("msgcode: 34509 data:", body.data(), body.size());
    PostMsg(kCodeA1_5, body.data(), body.size());
}
