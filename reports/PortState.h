// A1_14, the port state: the charging-state code and the body around it.
#pragma once

#include <array>
#include <cstdint>

#include "points/LiveEntry.h"
#include "reports/BodyField.h"

// Charging-state code of a port: 1 with a fault, otherwise by its gun state. `unknown` is the code of a gun
// state above 4: 1 in the port state, 0 in the charging and idle status.
constexpr std::uint8_t ChargingStateCode(bool fault, std::uint8_t gunState, std::uint8_t unknown) {
    constexpr std::uint8_t kByGunState[] = {2, 3, 5, 6, 1};
    if (fault) return 1;
    return gunState < sizeof kByGunState ? kByGunState[gunState] : unknown;
}

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
