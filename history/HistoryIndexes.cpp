#include "history/HistoryIndexes.h"

#include <cstring>

#include "System/AppFiles.h"
#include "System/Numbers.h"

namespace {

// Without indexes every query of the loop would read the whole table, which grows for years: a stall of
// seconds on flash. The last two are partial, they cost the rows of other hours nothing. They all come in one
// transaction: half of them would serve some query in an order that is not the table's.
constexpr const char* kOfNumberedRows[] = {
    // Had the newest of equal times first, and so gave another answer than the table itself.
    "DROP INDEX IF EXISTS tagYC_port_time",
    "CREATE INDEX IF NOT EXISTS tagYC_port ON tagYC(portNo)",
    "CREATE INDEX IF NOT EXISTS tagYC_port_time_id ON tagYC(portNo,timestamp,id DESC)",
    "CREATE INDEX IF NOT EXISTS tagYC_port_pending ON tagYC(portNo) WHERE sendcount >= 1 AND sendcount < 6",
    // Behind the one before: where both serve a query equally the youngest is taken, and the pending rows
    // come
    // by id.
    "CREATE INDEX IF NOT EXISTS tagYC_pending ON tagYC(id) WHERE sendcount >= 1 AND sendcount < 6",
};

// What is not numbered can only be found by port in the table's own order.
constexpr const char* kOfOtherRows[] = {
    "DROP INDEX IF EXISTS tagYC_port_time",
    "DROP INDEX IF EXISTS tagYC_port_time_id",
    "DROP INDEX IF EXISTS tagYC_port_pending",
    "DROP INDEX IF EXISTS tagYC_pending",
    "CREATE INDEX IF NOT EXISTS tagYC_port ON tagYC(portNo)",
};

// While it lives, SQLite's temporary files are made beside the databases. It would take the system's place
// for them, which is memory on a unit.
class CTempFilesOnFlash {
  public:
    CTempFilesOnFlash() { sqlite3_temp_directory = sqlite3_mprintf("%s", kAppDirectory); }
    ~CTempFilesOnFlash() {
        sqlite3_free(sqlite3_temp_directory);
        sqlite3_temp_directory = nullptr;
    }
    CTempFilesOnFlash(const CTempFilesOnFlash&) = delete;
    CTempFilesOnFlash& operator=(const CTempFilesOnFlash&) = delete;
};

template <std::size_t kCount>
bool InOneTransaction(CSqliteDb& database, const char* const (&statements)[kCount]) {
    // An index is built from a sorted copy of its columns, and a SQLite with keying keeps temporary data in
    // memory unless it is told otherwise: 50 MiB for the records of ten years. The files have no name any
    // more when the first byte is written to them, so that none outlives the process.
    const CTempFilesOnFlash files;
    if (database.Exec("PRAGMA temp_store=FILE") != SQLITE_OK || database.Exec("BEGIN") != SQLITE_OK)
        return false;
    for (const char* sql : statements)
        if (database.Exec(sql) != SQLITE_OK) return false;
    return database.Exec("COMMIT") == SQLITE_OK;
}

}  // namespace

bool HasNumberedRows(CSqliteDb& database) {
    constexpr int kName = 1;
    constexpr int kPrimaryKey = 5;
    constexpr char kOwnIndex[] = "sqlite_autoindex";
    const CSqliteTable columns(database, "PRAGMA table_info(tagYC)");
    const CSqliteTable indexes(database, "PRAGMA index_list(tagYC)");
    if (!indexes.Ok() || columns.Rows() == 0 || sqlite3_stricmp(columns.Cell(0, kName), "id") != 0 ||
        ParseInt32(columns.Cell(0, kPrimaryKey)) == 0)
        return false;
    // Any other primary key has an index of SQLite's own.
    for (int row = 0; row < indexes.Rows(); ++row)
        if (std::strncmp(indexes.Cell(row, kName), kOwnIndex, sizeof kOwnIndex - 1) == 0) return false;
    return true;
}

bool PrepareHistoryIndexes(CSqliteDb& database) {
    return HasNumberedRows(database) ? InOneTransaction(database, kOfNumberedRows)
                                     : InOneTransaction(database, kOfOtherRows);
}
