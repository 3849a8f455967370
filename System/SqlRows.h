// The rows of a query one by one: a result of any size takes no more memory than its largest row.
#pragma once

#include "System/Sqlite.h"

// Texts of a row's columns in order, null for NULL; valid for the call that hands them over.
struct SqlRow {
    const char* const* cells;
    int columns;

    // Null for a column that the row does not have.
    const char* Cell(int column) const { return column >= 0 && column < columns ? cells[column] : nullptr; }
};

class CSqlRows {
  public:
    // Runs `sql` on `database`, which must be open, at once and to its end. `take(row, cells)` is called with
    // the number of the row, from 0 on, and its SqlRow; a query can fail behind rows that were taken.
    template <typename Take>
    CSqlRows(CSqliteDb& database, const char* sql, Take take) {
        Run(database, sql, TakeWith<Take>, &take);
    }
    // Only counts.
    CSqlRows(CSqliteDb& database, const char* sql) : CSqlRows(database, sql, [](int, const SqlRow&) {}) {}
    ~CSqlRows() { sqlite3_free(m_error); }
    CSqlRows(const CSqlRows&) = delete;
    CSqlRows& operator=(const CSqlRows&) = delete;

    bool Ok() const { return m_result == SQLITE_OK; }
    int Result() const { return m_result; }
    // SQLite's error text after a failure, never null.
    const char* Error() const { return m_error != nullptr ? m_error : "unknown error"; }
    // How many rows there were; 0 after a failure.
    int Count() const { return m_count; }

  private:
    using TakeRow = void (*)(void* take, int row, const SqlRow& cells);

    template <typename Take>
    static void TakeWith(void* take, int row, const SqlRow& cells) {
        (*static_cast<Take*>(take))(row, cells);
    }
    static int Arrived(void* rows, int columns, char** cells, char** names);
    void Run(CSqliteDb& database, const char* sql, TakeRow takeRow, void* take);

    TakeRow m_takeRow = nullptr;
    void* m_take = nullptr;
    int m_result = SQLITE_ERROR;
    int m_count = 0;
    char* m_error = nullptr;
};
