#include "reports/ChargingStatus.h"

#include <cstring>

#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"
#include "reports/Messages.h"
#include "reports/PortState.h"

namespace {

// Eight bytes of the charging area, by the kind of identity that its first byte names; zeros for any other
// kind.
void PutVehicleIdentity(std::uint8_t* body, const BodyField& field, const std::uint8_t* area) {
    switch (area[0]) {
        case 1:
            return PutReversed(body, field, area + 166);
        case 3:
        case 5:
            return PutReversed(body, field, area + 182);
        case 4:
            return PutReversed(body, field, area + 174);
        default:
            return;
    }
}

// This report does not look at the port's own fault point; A1_14 does.
std::uint8_t StateCode(CShmCTRL& shm, int port) {
    const bool fault = shm.Signal(kSignalStationFault) != 0 || shm.Signal(kSignalEmergencyStop) != 0;
    return ChargingStateCode(fault, shm.GunState(port), kUnknownIsNoCode);
}

// Everything but the telemetry points.
void PutLive(std::uint8_t* body, const ChargingField& field, CShmCTRL& shm, int port,
             const std::array<std::uint8_t, kChargingAreaSize>& area) {
    switch (field.source) {
        case EChargingSource::Equipment:
            return PutReversed(body, field.at, shm.EquipmentNumber().data());
        case EChargingSource::Port:
            return PutField(body, field.at, static_cast<std::uint32_t>(port));
        case EChargingSource::StateCode:
            return PutField(body, field.at, StateCode(shm, port));
        case EChargingSource::PortSignal:
            return PutField(body, field.at, shm.Signal(PortBase(port) + field.number));
        case EChargingSource::StationSignal:
            return PutField(body, field.at, shm.Signal(field.number));
        case EChargingSource::AreaKind:
            return PutField(body, field.at, area[0]);
        case EChargingSource::VehicleIdentity:
            return PutVehicleIdentity(body, field.at, area.data());
        case EChargingSource::AreaBytes:
            return PutReversed(body, field.at, area.data() + field.number);
        case EChargingSource::Counter:
            return PutField(body, field.at, shm.Counter(CounterBase(port) + field.number));
        case EChargingSource::Yc:
        case EChargingSource::YcBytes:
        case EChargingSource::Zero:
            return;
    }
}

void PutPoint(std::uint8_t* body, const ChargingField& field, const YcPointRecord& point) {
    if (field.source == EChargingSource::Yc) return PutField(body, field.at, ConvertYc(field.form, point));
    std::uint8_t bytes[kYcAreaSize];
    std::memcpy(bytes, point.name, sizeof bytes);
    PutReversed(body, field.at, bytes);
}

bool TakesPoint(const ChargingField& field, std::int64_t number) {
    const bool ofPoint = field.source == EChargingSource::Yc || field.source == EChargingSource::YcBytes;
    return ofPoint && field.number == number;
}

}  // namespace

ChargingBody BuildChargingBody(CShmCTRL& shm, const std::list<YcPointRecord>& points, int port) {
    ChargingBody body{};
    const auto area = shm.ChargingArea(port);
    for (const ChargingField& field : kChargingFields) PutLive(body.data(), field, shm, port, area);
    for (const YcPointRecord& point : points) {
        const std::int64_t number = std::int64_t{point.pointNumber} - PortBase(port);
        for (const ChargingField& field : kChargingFields)
            if (TakesPoint(field, number)) PutPoint(body.data(), field, point);
    }
    return body;
}

void CRuntimeData::Send_DC_A1_5(const std::list<YcPointRecord>& points, int port) {
    constexpr std::uint32_t kFastReports = 18;  // a charging begins with this many, in quick succession
    constexpr std::uint32_t kFastTicks = 100;
    PortState& state = Port(port);
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
    const ChargingBody body = BuildChargingBody(*m_shm, points, port);
    CDiagLine(__func__).Dump("msgcode: 34509 data:", body.data(), body.size());
    PostMsg(kCodeA1_5, body.data(), body.size());
}
