// A1_14, the port state: the charging-state code and the body around it.
#pragma once

#include <array>
#include <cstdint>
#include <iterator>

#include "ipc/BodyField.h"
#include "points/LiveEntry.h"

// Code of a gun state that is not known: a fault in the port state, none in the charging and the idle status.
inline constexpr std::uint8_t kUnknownIsFault = 1;
inline constexpr std::uint8_t kUnknownIsNoCode = 0;

inline constexpr std::uint8_t kFaultState = 1;

// Gun states as the acquisition side counts them.
enum EGunState : std::uint8_t { kGunIdle, kGunPlugged, kGunCharging, kGunFinished, kGunFault };

// By the gun state.
inline constexpr std::uint8_t kStatesByGun[] = {2, 3, 5, 6, kFaultState};
static_assert(std::size(kStatesByGun) == kGunFault + 1);

// Charging-state code of a port: 1 with a fault, otherwise by its gun state, `unknown` for a gun state
// above 4.
constexpr std::uint8_t ChargingStateCode(bool fault, std::uint8_t gunState, std::uint8_t unknown) {
    if (fault) return kFaultState;
    return gunState < std::size(kStatesByGun) ? kStatesByGun[gunState] : unknown;
}

class CShmCTRL;

// True when a station-wide fault signal or the fault signal of `port` itself is set.
bool PortHasFault(CShmCTRL& shm, int port);

using EquipmentNumber = std::array<std::uint8_t, kEquipmentSize>;

// What the body is made from; the number of a fixed field is its own.
struct PortStateSource {
    const EquipmentNumber& equipment;  // as stored in shared memory
    int port;
    std::uint8_t stateCode;
};

struct PortStateField {
    BodyField at;
    // The field's number; null for the equipment number.
    std::uint32_t (*number)(const PortStateSource& source);
};

template <std::uint32_t kValue>
constexpr std::uint32_t Fixed(const PortStateSource& /*source*/) {
    return kValue;
}

inline constexpr PortStateField kPortStateFields[] = {
    {{0, kEquipmentSize, EFieldForm::Reversed, "equipment"}, nullptr},
    {{8, 1, EFieldForm::Number, "port"},
     [](const PortStateSource& source) { return static_cast<std::uint32_t>(source.port); }},
    {{9, 1, EFieldForm::Fixed, nullptr}, Fixed<1>},
    {{10, 1, EFieldForm::Fixed, nullptr}, Fixed<0>},
    {{11, 2, EFieldForm::Fixed, nullptr}, Fixed<1000>},
    {{13, 1, EFieldForm::Fixed, nullptr}, Fixed<0>},
    {{14, 1, EFieldForm::Number, "state"},
     [](const PortStateSource& source) { return std::uint32_t{source.stateCode}; }},
    {{15, 1, EFieldForm::Fixed, nullptr}, Fixed<0>},
    {{16, 1, EFieldForm::Fixed, nullptr}, Fixed<0>},
    {{17, 1, EFieldForm::Fixed, nullptr}, Fixed<1>},
};
inline constexpr std::size_t kPortStateSize = 18;
static_assert(CoversBody(kPortStateFields, kPortStateSize));

using PortStateBody = std::array<std::uint8_t, kPortStateSize>;

PortStateBody BuildPortStateBody(const PortStateSource& source);
