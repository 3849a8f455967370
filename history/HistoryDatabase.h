// The history database: its table, its columns, and rows as records.
#pragma once

#include <array>
#include <cstdint>

#include "System/Sqlite.h"
#include "history/HistoryRecord.h"

inline constexpr char kYcTable[] = "tagYC";
inline constexpr char kCreateYc[] =
    "CREATE TABLE tagYC(id INTEGER PRIMARY KEY,portNo INTERGER(1), sendcount INTEGER(1),mvalue TEXT(20),"
    "mvalue_1 TEXT(20),mvalue_2 TEXT(20),mvalue_3 TEXT(20),mvalue_4 TEXT(20),fvalue TEXT(20),fvalue_1 "
    "TEXT(20),"
    "fvalue_2 TEXT(20),fvalue_3 TEXT(20),fvalue_4 TEXT(20),tradenumber TEXT(40),tradeelec TEXT(20),fretime "
    "TEXT(40),"
    "timestamp TimeStamp NOT NULL DEFAULT (datetime('now','localtime')),chargeCnt TEXT(40),chargeTime "
    "TEXT(40),"
    "dcK1Cnt TEXT(40),dcK2Cnt TEXT(40))";
static_assert(sizeof kCreateYc == 456 + 1);

// Columns in the order of `select *`.
enum EHistoryColumn {
    kHistoryId,
    kHistoryPortNo,
    kHistorySendCount,
    kHistoryMValue,
    kHistoryMValue1,
    kHistoryMValue2,
    kHistoryMValue3,
    kHistoryMValue4,
    kHistoryFValue,
    kHistoryFValue1,
    kHistoryFValue2,
    kHistoryFValue3,
    kHistoryFValue4,
    kHistoryTradeNumber,
    kHistoryTradeElec,
    kHistoryFreTime,
    kHistoryTimestamp,
    kHistoryChargeCnt,
    kHistoryChargeTime,
    kHistoryK1Cnt,
    kHistoryK2Cnt,
    kHistoryColumns  // how many there are
};

// Texts of a row by column, null for NULL and for a column that the row does not have.
using HistoryCells = std::array<const char*, kHistoryColumns>;
HistoryCells HistoryCellsOf(const CSqliteTable& table, int row);
HistoryCells HistoryCellsOf(const SqlRow& row);

// A row that is resent: what its send count was.
struct SentRow {
    std::int32_t id;
    std::int32_t sendCount;
};

// A request for an hour is answered with the newest record before this second of it: the record of an hour is
// written when it begins.
inline constexpr int kHourAnswerEnd = 10;

// Send counts: a record of midnight begins as pending, is pending while it is being sent again, and is given
// up in the end. The others have none.
inline constexpr int kFirstPending = 1;
inline constexpr int kGivenUp = 6;

constexpr bool IsPending(int sendCount) {
    return sendCount >= kFirstPending && sendCount < kGivenUp;
}

// Whether the file at `path`, which exists, holds nothing or cannot be looked at, twice in a row with a while
// between.
bool IsHistoryBroken(const char* path);

// Fills `record` from a row. A NULL leaves its field as it was, a text is cut to its field. The status
// becomes Found.
void FillRecord(YcHistoryRecord& record, const HistoryCells& cells);
// Prints the main values of a record as lines of `operation`.
void PrintRecord(const YcHistoryRecord& record, const char* operation);
