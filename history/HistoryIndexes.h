// The indexes of the history table, which make its queries quick and never change what they give.
#pragma once

#include "System/Sqlite.h"

// True for a table whose first column `id` is SQLite's number of the row: what is ordered by it is in the
// order in which a reading without any index gives the rows. False also when that cannot be told.
bool HasNumberedRows(CSqliteDb& database);

// Gives the history table the indexes that suit it and takes away those that do not: all of it or nothing. On
// failure, which is false, the database says why and its transaction may still be open.
bool PrepareHistoryIndexes(CSqliteDb& database);
