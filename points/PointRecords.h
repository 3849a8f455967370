// What the point settings say of a point, and the state kept with it.
#pragma once

#include <cstdint>
#include <list>

// Where a status point lives.
inline constexpr std::int32_t kSourceYx =
    0;  // the YX table: station-wide points below 98, then the ports' points
inline constexpr std::int32_t kSourceYx2 = 1;  // the second YX table

// Values of YxPointRecord::flag.
inline constexpr std::int32_t kFlagUnset = 0;
inline constexpr std::int32_t kFlagTrue = 1;
inline constexpr std::int32_t kFlagFalse = 2;

// One status point (YX), or the copy of one for a further port.
struct YxPointRecord {
    std::int32_t id;
    char name[128];
    std::uint8_t previous;  // state at the last tick
    std::uint8_t current;   // state at this tick
    std::int32_t level;     // severity of its events
    std::int32_t flag;
    std::int32_t pointNumber;  // index in the live table, already the port's own
    std::int32_t port;         // 0 on a station with one port
    std::int32_t address;      // information address in the signal reports; 0 is never reported
    std::int32_t source;
    std::uint8_t reserved[164];
};
static_assert(sizeof(YxPointRecord) == 324);

inline constexpr int kYcAreaSize = 40;

// One telemetry point (YC), or the copy of one for a further port.
struct YcPointRecord {
    std::int32_t id;
    // The point's name, until the first refresh puts the 40-byte area of the live entry over it: no text from
    // then on.
    char name[kYcAreaSize];
    float scale;
    std::uint32_t offset;
    std::uint32_t previousRaw;
    std::uint32_t currentRaw;
    std::int32_t pointNumber;
    std::int32_t groupBase;
    std::int32_t groupCode;
    float realC;
    float realD;
    std::uint8_t reserved[28];
};
static_assert(sizeof(YcPointRecord) == 108);

// Telemetry points that are refreshed and reported together.
struct YcGroup {
    std::int32_t key;   // group base of its points divided by 50
    std::int32_t code;  // explicit group; 0 where the key decides
    std::int32_t reserved;
    std::list<YcPointRecord> points;
};
