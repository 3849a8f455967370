// A1_5, the charging status: where each of its bytes comes from.
#pragma once

#include <array>
#include <list>

#include "points/PointRecords.h"
#include "points/Signals.h"
#include "reports/BodyField.h"
#include "reports/YcConversion.h"

class CShmCTRL;

enum class EChargingSource : std::uint8_t {
    Equipment,
    Port,
    StateCode,
    Zero,
    PortSignal,       // number: point above the port's base
    StationSignal,    // number: point
    Yc,               // number: telemetry point above the port's base, converted by `form`
    YcBytes,          // number: as Yc; the first bytes of the point's live area
    AreaKind,         // vehicle-identity kind of the charging area
    VehicleIdentity,  // the bytes of the charging area that the kind names
    AreaBytes,        // number: first byte in the charging area
    Counter           // number: energy counter above the port's base
};

struct ChargingField {
    BodyField at;
    EChargingSource source;
    std::uint16_t number = 0;
    EYcForm form = EYcForm::U;
};

inline constexpr ChargingField kChargingFields[] = {
    {{0, 8, EShow::Reversed, "equipment"}, EChargingSource::Equipment},
    {{8, 1, EShow::Number, "port"}, EChargingSource::Port},
    {{9, 1, EShow::Number, "connected"}, EChargingSource::PortSignal, kSignalGunConnected},
    {{10, 1, EShow::Number, "inHolder"}, EChargingSource::PortSignal, kSignalGunInHolder},
    {{11, 1, EShow::Number, "locked"}, EChargingSource::PortSignal, kSignalGunLocked},
    {{12, 1, EShow::Number, "control"}, EChargingSource::PortSignal, kSignalControl},
    {{13, 1, EShow::Number, "state"}, EChargingSource::StateCode},
    {{14, 1, EShow::Fixed, nullptr}, EChargingSource::Zero},
    {{15, 2, EShow::Number, "outputV"}, EChargingSource::Yc, 101, EYcForm::U},
    {{17, 2, EShow::Number, "outputI"}, EChargingSource::Yc, 102, EYcForm::U},
    {{19, 2, EShow::Number, "needV"}, EChargingSource::Yc, 110, EYcForm::U},
    {{21, 2, EShow::Number, "needI"}, EChargingSource::Yc, 111, EYcForm::A},
    {{23, 1, EShow::Number, "yc112"}, EChargingSource::Yc, 112, EYcForm::U},
    {{24, 2, EShow::Number, "soc"}, EChargingSource::Yc, 103, EYcForm::U},
    {{26, 1, EShow::Number, "yc120"}, EChargingSource::Yc, 120, EYcForm::U},
    {{27, 2, EShow::Number, "yc104"}, EChargingSource::Yc, 104, EYcForm::AS},
    {{29, 2, EShow::Number, "yc105"}, EChargingSource::Yc, 105, EYcForm::AS},
    {{31, 2, EShow::Number, "yc179"}, EChargingSource::Yc, 179, EYcForm::U},
    {{33, 2, EShow::Number, "yc115"}, EChargingSource::Yc, 115, EYcForm::U},
    {{35, 2, EShow::Number, "yc106"}, EChargingSource::Yc, 106, EYcForm::U},
    {{37, 2, EShow::Number, "yc107"}, EChargingSource::Yc, 107, EYcForm::U},
    {{39, 4, EShow::Number, "energy"}, EChargingSource::Yc, 136, EYcForm::U},
    {{43, 4, EShow::Number, "yc166"}, EChargingSource::Yc, 166, EYcForm::U},
    {{47, 4, EShow::Number, "yc167"}, EChargingSource::Yc, 167, EYcForm::U},
    {{51, 1, EShow::Number, "vehicleIdentityKind"}, EChargingSource::AreaKind},
    {{52, 8, EShow::Reversed, "vehicleIdentity"}, EChargingSource::VehicleIdentity},
    {{60, 8, EShow::Reversed, "area328"}, EChargingSource::AreaBytes, 328},
    {{68, 8, EShow::Reversed, "area336"}, EChargingSource::AreaBytes, 336},
    {{76, 16, EShow::Reversed, "area200"}, EChargingSource::AreaBytes, 200},
    {{92, 2, EShow::Number, "realV"}, EChargingSource::Yc, 113, EYcForm::U},
    {{94, 2, EShow::Number, "realI"}, EChargingSource::Yc, 114, EYcForm::N},
    {{96, 2, EShow::Number, "yc116"}, EChargingSource::Yc, 116, EYcForm::AS},
    {{98, 2, EShow::Number, "yc117"}, EChargingSource::Yc, 117, EYcForm::AS},
    {{100, 2, EShow::Number, "yc118"}, EChargingSource::Yc, 118, EYcForm::AS},
    {{102, 2, EShow::Number, "yc119"}, EChargingSource::Yc, 119, EYcForm::AS},
    {{104, 1, EShow::Number, "yc121"}, EChargingSource::Yc, 121, EYcForm::U},
    {{105, 2, EShow::Number, "yc122"}, EChargingSource::Yc, 122, EYcForm::U},
    {{107, 2, EShow::Number, "yc123"}, EChargingSource::Yc, 123, EYcForm::U},
    {{109, 2, EShow::Number, "yc124"}, EChargingSource::Yc, 124, EYcForm::N},
    {{111, 2, EShow::Number, "yc125"}, EChargingSource::Yc, 125, EYcForm::U},
    {{113, 2, EShow::Number, "yc126"}, EChargingSource::Yc, 126, EYcForm::U},
    {{115, 2, EShow::Number, "yc127"}, EChargingSource::Yc, 127, EYcForm::U},
    {{117, 2, EShow::Number, "yc128"}, EChargingSource::Yc, 128, EYcForm::U},
    {{119, 2, EShow::Number, "yc129"}, EChargingSource::Yc, 129, EYcForm::U},
    {{121, 4, EShow::Number, "yc172"}, EChargingSource::Yc, 172, EYcForm::U},
    {{125, 1, EShow::Number, "yc227"}, EChargingSource::Yc, 227, EYcForm::A},
    {{126, 1, EShow::Number, "emergencyStop"}, EChargingSource::StationSignal, kSignalEmergencyStop},
    {{127, 1, EShow::Number, "stationAlarm"}, EChargingSource::StationSignal, kSignalStationAlarm},
    {{128, 1, EShow::Number, "signal197"}, EChargingSource::PortSignal, 197},
    {{129, 2, EShow::Number, "yc109"}, EChargingSource::Yc, 109, EYcForm::U},
    {{131, 1, EShow::Number, "yc204"}, EChargingSource::Yc, 204, EYcForm::A},
    {{132, 1, EShow::Number, "yc202"}, EChargingSource::Yc, 202, EYcForm::S},
    {{133, 1, EShow::Number, "yc203"}, EChargingSource::Yc, 203, EYcForm::S},
    {{134, 1, EShow::Number, "signal198"}, EChargingSource::PortSignal, 198},
    {{135, 1, EShow::Number, "signal199"}, EChargingSource::PortSignal, 199},
    {{136, 1, EShow::Number, "signal200"}, EChargingSource::PortSignal, 200},
    {{137, 1, EShow::Number, "signal202"}, EChargingSource::PortSignal, 202},
    {{138, 1, EShow::Number, "signal203"}, EChargingSource::PortSignal, 203},
    {{139, 1, EShow::Number, "signal204"}, EChargingSource::PortSignal, 204},
    {{140, 1, EShow::Number, "yc108"}, EChargingSource::Yc, 108, EYcForm::S},
    {{141, 1, EShow::Number, "yc199"}, EChargingSource::Yc, 199, EYcForm::A},
    {{142, 1, EShow::Number, "yc200"}, EChargingSource::Yc, 200, EYcForm::A},
    {{143, 1, EShow::Number, "yc201"}, EChargingSource::Yc, 201, EYcForm::A},
    {{144, 1, EShow::Number, "yc205"}, EChargingSource::Yc, 205, EYcForm::A},
    {{145, 17, EShow::Reversed, "yc130Bytes"}, EChargingSource::YcBytes, 130},
    {{162, 4, EShow::Reversed, "yc132Bytes"}, EChargingSource::YcBytes, 132},
    {{166, 4, EShow::Reversed, "yc131Bytes"}, EChargingSource::YcBytes, 131},
    {{170, 3, EShow::BigEndian, "yc132"}, EChargingSource::Yc, 132, EYcForm::U},
    {{173, 3, EShow::Number, "yc131"}, EChargingSource::Yc, 131, EYcForm::U},
    {{176, 1, EShow::Number, "yc133"}, EChargingSource::Yc, 133, EYcForm::A},
    {{177, 8, EShow::Reversed, "yc134Bytes"}, EChargingSource::YcBytes, 134},
    {{185, 4, EShow::Number, "yc137"}, EChargingSource::Yc, 137, EYcForm::U},
    {{189, 4, EShow::Number, "yc138"}, EChargingSource::Yc, 138, EYcForm::U},
    {{193, 4, EShow::Number, "yc139"}, EChargingSource::Yc, 139, EYcForm::U},
    {{197, 4, EShow::Number, "yc140"}, EChargingSource::Yc, 140, EYcForm::U},
    {{201, 8, EShow::Number, "counter15"}, EChargingSource::Counter, 15},
    {{209, 8, EShow::Number, "counter16"}, EChargingSource::Counter, 16},
    {{217, 4, EShow::Number, "yc141"}, EChargingSource::Yc, 141, EYcForm::U},
    {{221, 4, EShow::Number, "yc142"}, EChargingSource::Yc, 142, EYcForm::U},
    {{225, 4, EShow::Number, "yc143"}, EChargingSource::Yc, 143, EYcForm::U},
    {{229, 4, EShow::Number, "yc144"}, EChargingSource::Yc, 144, EYcForm::U},
};
inline constexpr std::size_t kChargingSize = 233;
static_assert(CoversBody(kChargingFields, kChargingSize));

using ChargingBody = std::array<std::uint8_t, kChargingSize>;

// Builds the body of `port` from live values and from the points of one group, which are read as the last
// refresh left them. Of two points for one field the later one counts; a field without a point stays 0.
ChargingBody BuildChargingBody(CShmCTRL& shm, const std::list<YcPointRecord>& points, int port);
