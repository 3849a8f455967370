// What the floors are made of: SQLite with nothing around it, and memcpy.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <vector>

#include "System/Sqlite.h"

// Ends the program with `what` where something is not as it has to be.
void Require(bool fine, const char* what);

// A prepared statement. Its failures end the program, as do those of the transactions below.
class CBareStatement {
  public:
    CBareStatement(CSqliteDb& database, const char* sql);
    ~CBareStatement() { sqlite3_finalize(m_statement); }
    CBareStatement(const CBareStatement&) = delete;
    CBareStatement& operator=(const CBareStatement&) = delete;

    // Runs it with `number` as ?1, and reads every column of every row.
    void Run(std::int64_t number = 0);

  private:
    CSqliteDb& m_database;
    sqlite3_stmt* m_statement = nullptr;
};

// Opens `file` of the application directory, calls `run` within one transaction, runs `after`, and closes.
void InBareTransaction(const char* file, const std::function<void(CSqliteDb&)>& run, const char* after = "");

void StoreBareEvents(CSqliteDb& database, int count);
// The same in a transaction of its own.
void StoreBareEvents(int count);

// As many bytes as something has.
class CSameBytes {
  public:
    explicit CSameBytes(std::size_t count) : m_from(count, 1), m_to(count) {
        Require(count > 0, "nothing was made");
    }
    void Copy() {
        benchmark::DoNotOptimize(m_from.data());
        std::memcpy(m_to.data(), m_from.data(), m_from.size());
        benchmark::ClobberMemory();
    }

  private:
    std::vector<std::uint8_t> m_from;
    std::vector<std::uint8_t> m_to;
};
