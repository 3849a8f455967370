#include "bench/Bare.h"

#include <cstdio>
#include <cstdlib>

#include "System/AppFiles.h"

void Require(bool fine, const char* what) {
    if (fine) return;
    std::fprintf(stderr, "zor_bench: %s\n", what);
    std::exit(1);
}

namespace {

void Require(bool done, CSqliteDb& database) {
    ::Require(done, sqlite3_errmsg(database.Handle()));
}

// Not by CSqliteDb, which would also bring the directory to the disk.
void Exec(CSqliteDb& database, const char* sql) {
    Require(sqlite3_exec(database.Handle(), sql, nullptr, nullptr, nullptr) == SQLITE_OK, database);
}

}  // namespace

CBareStatement::CBareStatement(CSqliteDb& database, const char* sql) : m_database(database) {
    Require(sqlite3_prepare_v2(database.Handle(), sql, -1, &m_statement, nullptr) == SQLITE_OK, database);
}

void CBareStatement::Run(std::int64_t number) {
    if (sqlite3_bind_parameter_count(m_statement) > 0) sqlite3_bind_int64(m_statement, 1, number);
    int result = 0;
    while ((result = sqlite3_step(m_statement)) == SQLITE_ROW)
        for (int i = 0; i < sqlite3_column_count(m_statement); ++i)
            benchmark::DoNotOptimize(sqlite3_column_text(m_statement, i));
    Require(result == SQLITE_DONE, m_database);
    sqlite3_reset(m_statement);
}

void InBareTransaction(const char* file, const std::function<void(CSqliteDb&)>& run, const char* after) {
    CSqliteDb database;
    Require(database.Open(CAppPath(file).c_str(), kBusyInLoopMs) == SQLITE_OK, database);
    Exec(database, "BEGIN");
    run(database);
    Exec(database, "COMMIT");
    Exec(database, after);
}

void StoreBareEvents(CSqliteDb& database, int count) {
    CBareStatement insert(
        database, "INSERT INTO tagSOE VALUES(NULL,'[Fault]signal 0 -> 1',1,?1,0,'2024-03-05 09:45:00')");
    for (int i = 0; i < count; ++i) insert.Run(i);
}

void StoreBareEvents(int count) {
    InBareTransaction(kEventFile, [count](CSqliteDb& database) { StoreBareEvents(database, count); });
}
