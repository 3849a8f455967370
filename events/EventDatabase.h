// Files, statements and texts of the event database.
#pragma once

#include <cstdint>
#include <ctime>

#include "System/Sqlite.h"

struct Event;

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

using EventSql = CSqlText<2048>;

// A time as the tables store it.
struct EventTime {
    char text[32];
    explicit EventTime(std::time_t when);
};

// The statement that stores `event` as row `id` of tagSOE.
void FormatSoeRow(EventSql& sql, std::uint32_t id, const Event& event);

// Index of the two switching counters that a change of point `pointNumber` of the YX table counts for, or -1.
// Point 137 itself, that of the first port, counts for none.
int SwitchingCounterOf(int pointNumber, int portCount);

// Base of the port whose charging measurements are recorded when `pointNumber` of the YX table takes `value`,
// or -1. The fault point of the first port records none.
int MeasuredPortBase(int pointNumber, int value);
