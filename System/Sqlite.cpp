#include "System/Sqlite.h"

#include <ZorSqlite.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Brings to the disk what was created and removed beside `file`.
void SyncDirectoryOf(const char* file) {
    char directory[256];
    const char* end = file != nullptr ? std::strrchr(file, '/') : nullptr;
    if (end == nullptr || end - file >= static_cast<std::ptrdiff_t>(sizeof directory)) return;
    std::snprintf(directory, sizeof directory, "%.*s", static_cast<int>(end - file), file);
    const int descriptor = open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

}  // namespace

int CSqliteDb::Open(const char* path, int busyTimeoutMs) {
    m_ownWait = CBusyWait(busyTimeoutMs);
    return Open(path, m_ownWait);
}

int CSqliteDb::Open(const char* path, CBusyWait& wait) {
    Close();
    const int result = sqlite3_open(path, &m_handle);
    if (result != SQLITE_OK) {
        std::fprintf(stderr, "Can't open database: %s\n", sqlite3_errmsg(m_handle));
        Close();  // a failed open leaves a handle all the same
        return result;
    }
    wait.Serve(m_handle);
    return result;
}

int CSqliteDb::OpenForReading(const char* path, int busyTimeoutMs) {
    Close();
    const int result = sqlite3_open_v2(path, &m_handle, SQLITE_OPEN_READONLY, nullptr);
    m_ownWait = CBusyWait(busyTimeoutMs);
    if (result == SQLITE_OK)
        m_ownWait.Serve(m_handle);
    else
        Close();
    return result;
}

void CSqliteDb::OpenOrExit(const char* path) {
    if (Open(path, kBusyAtStartUpMs) != SQLITE_OK) std::exit(0);
}

void CSqliteDb::Key(const char* key, int length) {
    sqlite3_key_v1(m_handle, key, length);
}

void CSqliteDb::Close() {
    SetError(nullptr);
    // A commit is the removal of its journal, and SQLite does not wait for that: the journal could be back
    // after a power failure, and undo what was committed.
    if (m_changed) SyncDirectoryOf(sqlite3_db_filename(m_handle, "main"));
    m_changed = false;
    sqlite3_close(m_handle);
    m_handle = nullptr;
}

int CSqliteDb::Exec(const char* sql) {
    SetError(nullptr);
    const int result = sqlite3_exec(m_handle, sql, nullptr, nullptr, &m_error);
    m_changed = m_changed || result == SQLITE_OK;
    return result;
}

int CSqliteDb::Exec(const CSqlTextBase& sql) {
    if (sql.Defect() == nullptr) return Exec(sql.Text());
    SetError(sql.Defect());
    return SQLITE_ERROR;
}

void CSqliteDb::SetError(const char* text) {
    sqlite3_free(m_error);
    m_error = text != nullptr ? sqlite3_mprintf("%s", text) : nullptr;
}

int CSqliteTransaction::Begin() {
    const int result = m_database.Exec("begin immediate transaction");
    m_begun = m_database.InTransaction();
    return result;
}

int CSqliteTransaction::Commit() {
    const int result = m_database.Exec("commit transaction");
    if (result == SQLITE_OK)
        m_begun = false;
    else
        RollBack();
    return result;
}

bool CSqliteTransaction::IsStoredAfterAll(const char* path, CBusyWait& wait, const CSqlTextBase& lastRow) {
    return m_database.Open(path, wait) == SQLITE_OK && CSqliteTable(m_database, lastRow).Rows() == 1;
}

void CSqliteTransaction::RollBack() {
    if (m_database.InTransaction()) m_database.Exec("rollback transaction");
    m_begun = false;
}

CSqliteTable::CSqliteTable(CSqliteDb& database, const char* sql) {
    Run(database, sql);
}

CSqliteTable::CSqliteTable(CSqliteDb& database, const CSqlTextBase& sql) {
    if (sql.Defect() == nullptr)
        Run(database, sql.Text());
    else
        m_error = sqlite3_mprintf("%s", sql.Defect());
}

void CSqliteTable::Run(CSqliteDb& database, const char* sql) {
    m_result = sqlite3_get_table(database.m_handle, sql, &m_cells, &m_rows, &m_columns, &m_error);
    if (Ok()) return;
    m_readFailed = sqlite3_extended_errcode(database.m_handle) == SQLITE_IOERR_READ;
    m_rows = 0;
    m_columns = 0;
}

CSqliteTable::~CSqliteTable() {
    sqlite3_free_table(m_cells);
    sqlite3_free(m_error);
}

const char* CSqliteTable::Error() const {
    return m_error != nullptr ? m_error : "unknown error";
}

const char* CSqliteTable::Cell(int row, int column) const {
    if (row < -1 || row >= m_rows || column < 0 || column >= m_columns) return nullptr;
    return m_cells[(row + 1) * m_columns + column];
}

int CSqlRows::Arrived(void* rows, int columns, char** cells, char** /*names*/) {
    auto& self = *static_cast<CSqlRows*>(rows);
    self.m_takeRow(self.m_take, self.m_count++, {cells, columns});
    return 0;
}

void CSqlRows::Run(CSqliteDb& database, const char* sql, TakeRow takeRow, void* take) {
    m_takeRow = takeRow;
    m_take = take;
    m_result = sqlite3_exec(database.m_handle, sql, Arrived, this, &m_error);
    if (!Ok()) m_count = 0;
}
