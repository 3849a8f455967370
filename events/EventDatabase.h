// Files, statements and texts of the event database.
#pragma once

#include <cstdint>
#include <vector>

#include "System/Sqlite.h"
#include "points/PointRecords.h"

inline constexpr char kErrMsgTable[] = "tagErrMsg";
inline constexpr char kSoeTable[] = "tagSOE";
inline constexpr char kCreateErrMsg[] =
    "CREATE TABLE tagErrMsg(id INTEGER PRIMARY KEY,event TEXT(256),timestamp TEXT(25))";
inline constexpr char kCreateSoe[] =
    "CREATE TABLE tagSOE(id INTEGER PRIMARY KEY, event TEXT(60), value INTEGER, point_no INTEGER, yx_table "
    "INTEGER, "
    "timestamp TEXT(25))";
inline constexpr char kSelectLastErrMsg[] = "select * from tagErrMsg order by id desc limit 1";
inline constexpr char kSelectLastSoe[] = "select * from tagSOE order by id desc limit 1";

// Columns of tagSOE in the order of `select *`.
enum ESoeColumn { kSoeId, kSoeEvent, kSoeValue, kSoePoint, kSoeYxTable, kSoeTimestamp, kSoeColumns };

// One change of a status point. `point` belongs to the point list, which outlives every walk.
struct StatusChange {
    const YxPointRecord* point;
    std::uint8_t value;
    bool rising;
};

// What the events of one walk share. Opening the file and committing for each event would stall the loop for
// seconds on flash when hundreds of points change at once.
struct EventWalk {
    bool active = false;    // a walk is on: events go through `database`
    bool together = false;  // its events stand in one transaction
    bool vacuumDue = false;
    std::uint32_t lastId =
        0;  // last row written to tagSOE, for events that stand together; 0 before the first
    CSqliteDb database;
    std::vector<StatusChange> changes;  // of this walk, in order; its capacity is reserved once
};

// Index of the two switching counters that a change of point `pointNumber` of the YX table counts for, or -1.
// Point 137 itself, that of the first port, counts for none.
int SwitchingCounterOf(int pointNumber, int portCount);

// Base of the port whose charging measurements are recorded when `pointNumber` of the YX table takes `value`,
// or -1. The fault point of the first port records none.
int ErrorSnapshotBase(int pointNumber, int value);
