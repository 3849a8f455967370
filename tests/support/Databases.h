// SQLite files for tests.
#pragma once

#include <string>
#include <vector>

#include "System/Sqlite.h"

// Path of `file` in the application directory.
std::string AppFile(const char* file);

// Runs the statements of `sql` on the database at `path`, making it where it is missing; keyed where a key is
// given. A failure fails the test.
void RunSql(const std::string& path, const std::string& sql, const char* key = nullptr);

// Rows of a query, columns joined by '|', NULL shown as "NULL".
std::vector<std::string> QueryRows(const std::string& path, const std::string& sql);

// The number that a query gives; -1 without one.
int QueryNumber(const std::string& path, const std::string& sql);

// A configuration database in the application directory that names `ports` ports.
void MakeConfig(int ports);

// A point-settings database in the application directory: the tables of `kind` ("DC" or "AC") with the given
// rows, each the values of an SQL VALUES list. Columns have no type, so that a cell is what its row says.
struct PointRows {
    std::vector<std::string> yx;
    std::vector<std::string> yc;
    std::size_t ycColumns = 9;
};
void MakePoints(const PointRows& rows, const std::string& kind = "DC");

// `yx` rows of `count` points in table 0: "Point n", level 5, numbers from `first` on.
std::vector<std::string> YxRows(int count, int first = 0);

// Another program's connection, which runs `statements` on the database at `path` and keeps what they lock.
class CForeignLock {
  public:
    CForeignLock(const std::string& path, const char* statements);

    static constexpr char kWriter[] = "BEGIN EXCLUSIVE";

  private:
    CSqliteDb m_database;
};

void WriteText(const std::string& path, const std::string& text);
