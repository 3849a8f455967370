// Layout of the live entries and areas in shared memory: offsets in bytes, little-endian.
#pragma once

#include <cstddef>

inline constexpr std::size_t kEntryArea = 4;  // YC and YX: free-form bytes
inline constexpr std::size_t kEntryAreaSize = 40;
inline constexpr std::size_t kYcCoefficient = 44;  // 32-bit float
inline constexpr std::size_t kYcRaw = 48;          // unsigned 32-bit
inline constexpr std::size_t kYxState = 44;        // one byte, 0 is off
inline constexpr std::size_t kDdLow = 48;          // 64-bit value, low word first, units of 1/10000
inline constexpr std::size_t kDdHigh = 52;

inline constexpr std::size_t kGunEntrySize = 4;
inline constexpr std::size_t kGunState = 1;          // in the entry of a port
inline constexpr std::size_t kDeviceEquipment = 44;  // 8-byte equipment number
inline constexpr std::size_t kEquipmentSize = 8;
inline constexpr std::size_t kChargingAreaSize = 344;

// What the library's reset covers: indices 0 to 611 of the YC and of the YX table.
inline constexpr int kResetEntries = 612;
