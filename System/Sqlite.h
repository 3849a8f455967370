// Small owners around SQLite: a connection that closes itself, a result table that frees itself, and rows one
// at a time.
#pragma once

#include <sqlite3.h>

#include "System/BusyWait.h"
#include "System/SqlText.h"

// A database connection; closed when the object goes.
class CSqliteDb {
  public:
    CSqliteDb() = default;
    ~CSqliteDb() { Close(); }
    CSqliteDb(const CSqliteDb&) = delete;
    CSqliteDb& operator=(const CSqliteDb&) = delete;

    // Opens `path`, creating the file where it is missing. Statements wait for a locked file out of `wait`,
    // or `busyTimeoutMs` milliseconds for all statements of the connection. On failure prints "Can't open
    // database: ..." on standard error. Returns SQLite's result code, SQLITE_OK (0) on success.
    int Open(const char* path, CBusyWait& wait);
    int Open(const char* path, int busyTimeoutMs);

    // Opens a file that exists, for reading only: creates nothing, and says nothing on failure.
    int OpenForReading(const char* path, int busyTimeoutMs);

    // As Open; a failure also ends the process with exit status 0. Start-up steps cannot go on without their
    // file.
    void OpenOrExit(const char* path);

    // Keys the opened database with the first `length` bytes of `key`.
    void Key(const char* key, int length);

    // Closes; does nothing when nothing is open. What was committed is then on the disk.
    void Close();

    // Executes one statement. Returns SQLite's result code; Error() then says what went wrong.
    int Exec(const char* sql);
    int Exec(const CSqlTextBase& sql);
    // Text of the last failed Exec, never null.
    const char* Error() const { return m_error != nullptr ? m_error : "unknown error"; }

    // For what has no operation here; null while nothing is open.
    sqlite3* Handle() const { return m_handle; }

    bool IsOpen() const { return m_handle != nullptr; }
    // True between a transaction's begin and its end; a full disk, for one, ends it unasked.
    bool InTransaction() const { return IsOpen() && sqlite3_get_autocommit(m_handle) == 0; }

  private:
    friend class CSqliteTable;
    friend class CSqlRows;

    void SetError(const char* text);

    sqlite3* m_handle = nullptr;
    char* m_error = nullptr;  // SQLite's allocation
    bool m_changed = false;   // a statement that changes something has run
    CBusyWait m_ownWait{0};   // of a connection that shares no budget
};

// Statements that stand together or not at all: one commit for all of them, where a commit for each would
// stall the loop for long on flash. Where no transaction can be had each statement stands by itself.
class CSqliteTransaction {
  public:
    explicit CSqliteTransaction(CSqliteDb& database) : m_database(database) {}

    // Returns SQLite's result code.
    int Begin();
    // True from a Begin that had a transaction on until its end.
    bool HasBegun() const { return m_begun; }
    // True when it has come to nothing unasked, and took its rows with it; a full disk does that, for one, at
    // whatever statement.
    bool HasDied() const { return m_begun && !m_database.InTransaction(); }
    // Ends it. Returns SQLite's result code, SQLITE_OK (0) when the rows are stored.
    int Commit();
    // A commit can fail after the fact, in giving up its lock, and only a new connection tells: opens `path`
    // anew and returns true when `lastRow`, a query for the row that was written last, finds it there.
    bool IsStoredAfterAll(const char* path, CBusyWait& wait, const CSqlTextBase& lastRow);
    void RollBack();

  private:
    CSqliteDb& m_database;
    bool m_begun = false;
};

// The result of one query, all of it text.
class CSqliteTable {
  public:
    // Runs `sql` on `database`, which must be open, at once. Ok() tells whether it worked; a failed query has
    // no rows and no columns.
    CSqliteTable(CSqliteDb& database, const char* sql);
    CSqliteTable(CSqliteDb& database, const CSqlTextBase& sql);
    ~CSqliteTable();
    CSqliteTable(const CSqliteTable&) = delete;
    CSqliteTable& operator=(const CSqliteTable&) = delete;

    bool Ok() const { return m_result == SQLITE_OK; }
    // True for a failure that says nothing about the file's content: it was locked, could not be read or
    // mended just now, or memory had run out.
    bool IsPassing() const {
        return !Ok() && m_result != SQLITE_ERROR && m_result != SQLITE_CORRUPT && m_result != SQLITE_NOTADB;
    }
    // True when the system could not read the file; it may the next time.
    bool ReadFailed() const { return m_readFailed; }
    int Result() const { return m_result; }
    // SQLite's error text after a failure, never null.
    const char* Error() const;
    int Rows() const { return m_rows; }
    // 0 also when the query gave no row.
    int Columns() const { return m_columns; }
    // Text of a cell, null for SQL NULL and for a place outside the table. Rows count from 0, without the
    // names.
    const char* Cell(int row, int column) const;
    // Name of a column, null outside the table.
    const char* Name(int column) const { return Cell(-1, column); }

  private:
    void Run(CSqliteDb& database, const char* sql);

    int m_result = SQLITE_ERROR;
    bool m_readFailed = false;
    int m_rows = 0;
    int m_columns = 0;
    char** m_cells = nullptr;
    char* m_error = nullptr;
};

// Texts of a row's columns in order, null for NULL; valid for the call that hands them over.
struct SqlRow {
    const char* const* cells;
    int columns;

    // Null for a column that the row does not have.
    const char* Cell(int column) const { return column >= 0 && column < columns ? cells[column] : nullptr; }
};

// The rows of a query one by one: a result of any size takes no more memory than its largest row.
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
