// A1_5, the charging status: where each of its bytes comes from.
#pragma once

#include <array>
#include <list>
#include <vector>

#include "ipc/BodyField.h"
#include "points/PointRecords.h"
#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/YcConversion.h"

class CShmCTRL;
struct ChargingField;

// What the fields of one port's body are filled from.
struct ChargingSource {
    CShmCTRL& shm;
    int port;
    const std::uint8_t* area;    // the port's charging area
    const YcPointRecord* point;  // the telemetry point of the field, for those that show one
};

// What fills a field: below, each beside what its `number` means.
using PutChargingField = void (*)(std::uint8_t* body, const ChargingField& field,
                                  const ChargingSource& source);

void PutEquipment(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
void PutPort(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
void PutStateCode(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
void PutNothing(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// A signal above the port's base.
void PutPortSignal(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// A signal.
void PutStationSignal(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// A telemetry point above the port's base, converted.
void PutYc(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// The same; the first bytes of its live area.
void PutYcBytes(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// The vehicle-identity kind of the charging area, and the bytes that it names.
void PutAreaKind(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
void PutVehicleIdentity(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// The first byte in the charging area.
void PutAreaBytes(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);
// An energy counter above the port's base.
void PutCounter(std::uint8_t* body, const ChargingField& field, const ChargingSource& source);

struct ChargingField {
    BodyField at;
    PutChargingField put;
    std::uint16_t number = 0;
    YcConversion convert = nullptr;

    constexpr bool ShowsPoint() const { return put == PutYc || put == PutYcBytes; }
};

// A new field is a row here and kChargingSize: whoever decodes follows. By hand follow the expected bytes of
// the tests, the benchmark's name, a new point among those of a made station
// (tools/zorctl/settings/StationRows.cpp), and zor_main.
inline constexpr ChargingField kChargingFields[] = {
    {{0, 8, EFieldForm::Reversed, "equipment"}, PutEquipment},
    {{8, 1, EFieldForm::Number, "port"}, PutPort},
    {{9, 1, EFieldForm::Number, "connected"}, PutPortSignal, kSignalGunConnected},
    {{10, 1, EFieldForm::Number, "inHolder"}, PutPortSignal, kSignalGunInHolder},
    {{11, 1, EFieldForm::Number, "locked"}, PutPortSignal, kSignalGunLocked},
    {{12, 1, EFieldForm::Number, "control"}, PutPortSignal, kSignalControl},
    {{13, 1, EFieldForm::Number, "state"}, PutStateCode},
    {{14, 1, EFieldForm::Fixed, nullptr}, PutNothing},
    {{15, 2, EFieldForm::Number, "outputV"}, PutYc, 101, ConvertU},
    {{17, 2, EFieldForm::Number, "outputI"}, PutYc, 102, ConvertU},
    {{19, 2, EFieldForm::Number, "needV"}, PutYc, 110, ConvertU},
    {{21, 2, EFieldForm::Number, "needI"}, PutYc, 111, ConvertA},
    {{23, 1, EFieldForm::Number, "yc112"}, PutYc, 112, ConvertU},
    {{24, 2, EFieldForm::Number, "soc"}, PutYc, 103, ConvertU},
    {{26, 1, EFieldForm::Number, "yc120"}, PutYc, 120, ConvertU},
    {{27, 2, EFieldForm::Number, "yc104"}, PutYc, 104, ConvertAS},
    {{29, 2, EFieldForm::Number, "yc105"}, PutYc, 105, ConvertAS},
    {{31, 2, EFieldForm::Number, "yc179"}, PutYc, 179, ConvertU},
    {{33, 2, EFieldForm::Number, "yc115"}, PutYc, 115, ConvertU},
    {{35, 2, EFieldForm::Number, "yc106"}, PutYc, 106, ConvertU},
    {{37, 2, EFieldForm::Number, "yc107"}, PutYc, 107, ConvertU},
    {{39, 4, EFieldForm::Number, "energy"}, PutYc, 136, ConvertU},
    {{43, 4, EFieldForm::Number, "yc166"}, PutYc, 166, ConvertU},
    {{47, 4, EFieldForm::Number, "yc167"}, PutYc, 167, ConvertU},
    {{51, 1, EFieldForm::Number, "vehicleIdentityKind"}, PutAreaKind},
    {{52, 8, EFieldForm::Reversed, "vehicleIdentity"}, PutVehicleIdentity},
    {{60, 8, EFieldForm::Reversed, "area328"}, PutAreaBytes, 328},
    {{68, 8, EFieldForm::Reversed, "area336"}, PutAreaBytes, 336},
    {{76, 16, EFieldForm::Reversed, "area200"}, PutAreaBytes, 200},
    {{92, 2, EFieldForm::Number, "realV"}, PutYc, 113, ConvertU},
    {{94, 2, EFieldForm::Number, "realI"}, PutYc, 114, ConvertN},
    {{96, 2, EFieldForm::Number, "yc116"}, PutYc, 116, ConvertAS},
    {{98, 2, EFieldForm::Number, "yc117"}, PutYc, 117, ConvertAS},
    {{100, 2, EFieldForm::Number, "yc118"}, PutYc, 118, ConvertAS},
    {{102, 2, EFieldForm::Number, "yc119"}, PutYc, 119, ConvertAS},
    {{104, 1, EFieldForm::Number, "yc121"}, PutYc, 121, ConvertU},
    {{105, 2, EFieldForm::Number, "yc122"}, PutYc, 122, ConvertU},
    {{107, 2, EFieldForm::Number, "yc123"}, PutYc, 123, ConvertU},
    {{109, 2, EFieldForm::Number, "yc124"}, PutYc, 124, ConvertN},
    {{111, 2, EFieldForm::Number, "yc125"}, PutYc, 125, ConvertU},
    {{113, 2, EFieldForm::Number, "yc126"}, PutYc, 126, ConvertU},
    {{115, 2, EFieldForm::Number, "yc127"}, PutYc, 127, ConvertU},
    {{117, 2, EFieldForm::Number, "yc128"}, PutYc, 128, ConvertU},
    {{119, 2, EFieldForm::Number, "yc129"}, PutYc, 129, ConvertU},
    {{121, 4, EFieldForm::Number, "yc172"}, PutYc, 172, ConvertU},
    {{125, 1, EFieldForm::Number, "yc227"}, PutYc, 227, ConvertA},
    {{126, 1, EFieldForm::Number, "emergencyStop"}, PutStationSignal, kSignalEmergencyStop},
    {{127, 1, EFieldForm::Number, "stationAlarm"}, PutStationSignal, kSignalStationAlarm},
    {{128, 1, EFieldForm::Number, "signal197"}, PutPortSignal, 197},
    {{129, 2, EFieldForm::Number, "yc109"}, PutYc, 109, ConvertU},
    {{131, 1, EFieldForm::Number, "yc204"}, PutYc, 204, ConvertA},
    {{132, 1, EFieldForm::Number, "yc202"}, PutYc, 202, ConvertS},
    {{133, 1, EFieldForm::Number, "yc203"}, PutYc, 203, ConvertS},
    {{134, 1, EFieldForm::Number, "signal198"}, PutPortSignal, 198},
    {{135, 1, EFieldForm::Number, "signal199"}, PutPortSignal, 199},
    {{136, 1, EFieldForm::Number, "signal200"}, PutPortSignal, 200},
    {{137, 1, EFieldForm::Number, "signal202"}, PutPortSignal, 202},
    {{138, 1, EFieldForm::Number, "signal203"}, PutPortSignal, 203},
    {{139, 1, EFieldForm::Number, "signal204"}, PutPortSignal, 204},
    {{140, 1, EFieldForm::Number, "yc108"}, PutYc, 108, ConvertS},
    {{141, 1, EFieldForm::Number, "yc199"}, PutYc, 199, ConvertA},
    {{142, 1, EFieldForm::Number, "yc200"}, PutYc, 200, ConvertA},
    {{143, 1, EFieldForm::Number, "yc201"}, PutYc, 201, ConvertA},
    {{144, 1, EFieldForm::Number, "yc205"}, PutYc, 205, ConvertA},
    {{145, 17, EFieldForm::Reversed, "yc130Bytes"}, PutYcBytes, 130},
    {{162, 4, EFieldForm::Reversed, "yc132Bytes"}, PutYcBytes, 132},
    {{166, 4, EFieldForm::Reversed, "yc131Bytes"}, PutYcBytes, 131},
    {{170, 3, EFieldForm::BigEndian, "yc132"}, PutYc, 132, ConvertU},
    {{173, 3, EFieldForm::Number, "yc131"}, PutYc, 131, ConvertU},
    {{176, 1, EFieldForm::Number, "yc133"}, PutYc, 133, ConvertA},
    {{177, 8, EFieldForm::Reversed, "yc134Bytes"}, PutYcBytes, 134},
    {{185, 4, EFieldForm::Number, "yc137"}, PutYc, 137, ConvertU},
    {{189, 4, EFieldForm::Number, "yc138"}, PutYc, 138, ConvertU},
    {{193, 4, EFieldForm::Number, "yc139"}, PutYc, 139, ConvertU},
    {{197, 4, EFieldForm::Number, "yc140"}, PutYc, 140, ConvertU},
    {{201, 8, EFieldForm::Number, "counter15"}, PutCounter, 15},
    {{209, 8, EFieldForm::Number, "counter16"}, PutCounter, 16},
    {{217, 4, EFieldForm::Number, "yc141"}, PutYc, 141, ConvertU},
    {{221, 4, EFieldForm::Number, "yc142"}, PutYc, 142, ConvertU},
    {{225, 4, EFieldForm::Number, "yc143"}, PutYc, 143, ConvertU},
    {{229, 4, EFieldForm::Number, "yc144"}, PutYc, 144, ConvertU},
};
inline constexpr std::size_t kChargingSize = 233;
static_assert(CoversBody(kChargingFields, kChargingSize));

using ChargingBody = std::array<std::uint8_t, kChargingSize>;

// A field that shows a telemetry point, and the point.
struct ChargingPlace {
    const ChargingField* field;
    const YcPointRecord* point;
};

// The points of one group that the charging and the idle status show, by port. Found once, when the settings
// are loaded: of two points for one place the later one counts. Points into the group's list.
struct GroupPlaces {
    std::array<std::vector<ChargingPlace>, kPortSlots> charging;
    const YcPointRecord* voltage = nullptr;  // of every port's idle status; null without such a point
    const YcPointRecord* current = nullptr;

    GroupPlaces() = default;
    explicit GroupPlaces(const std::list<YcPointRecord>& points);
};

// Builds the body of `port` from live values and from the points of one group, which are read as the last
// refresh left them. A field without a point stays 0.
ChargingBody BuildChargingBody(CShmCTRL& shm, const GroupPlaces& places, int port);
