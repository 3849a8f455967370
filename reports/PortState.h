// A1_14, the port state: the charging-state code and the body around it.
#pragma once

#include <array>
#include <cstdint>

#include "points/LiveEntry.h"
#include "reports/BodyField.h"

// Code of a gun state that is not known: a fault in the port state, none in the charging and the idle status.
inline constexpr std::uint8_t kUnknownIsFault = 1;
inline constexpr std::uint8_t kUnknownIsNoCode = 0;

// Charging-state code of a port: 1 with a fault, otherwise by its gun state, `unknown` for a gun state
// above 4.
constexpr std::uint8_t ChargingStateCode(bool fault, std::uint8_t gunState, std::uint8_t unknown) {
    constexpr std::uint8_t kByGunState[] = {2, 3, 5, 6, 1};
    if (fault) return 1;
    return gunState < sizeof kByGunState ? kByGunState[gunState] : unknown;
}

class CShmCTRL;

// True when a station-wide fault signal or the fault signal of `port` itself is set.
bool PortHasFault(CShmCTRL& shm, int port);

enum class EPortStateSource : std::uint8_t { Equipment, Port, StateCode, Constant };

struct PortStateField {
    BodyField at;
    EPortStateSource source;
    std::uint16_t constant = 0;
};

inline constexpr PortStateField kPortStateFields[] = {
    {{0, kEquipmentSize, EShow::Reversed, "equipment"}, EPortStateSource::Equipment},
    {{8, 1, EShow::Number, "port"}, EPortStateSource::Port},
    {{9, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 1},
    {{10, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 0},
    {{11, 2, EShow::Fixed, nullptr}, EPortStateSource::Constant, 1000},
    {{13, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 0},
    {{14, 1, EShow::Number, "state"}, EPortStateSource::StateCode},
    {{15, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 0},
    {{16, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 0},
    {{17, 1, EShow::Fixed, nullptr}, EPortStateSource::Constant, 1},
};
inline constexpr std::size_t kPortStateSize = 18;
static_assert(CoversBody(kPortStateFields, kPortStateSize));

using EquipmentNumber = std::array<std::uint8_t, kEquipmentSize>;
using PortStateBody = std::array<std::uint8_t, kPortStateSize>;

// `equipment` as stored in shared memory.
PortStateBody BuildPortStateBody(const EquipmentNumber& equipment, int port, std::uint8_t stateCode);
