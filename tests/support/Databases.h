// SQLite files for tests.
#pragma once

#include <string>
#include <vector>

// Path of `file` in the application directory.
std::string AppFile(const char* file);

// Runs the statements of `sql` on the database at `path`, making it where it is missing; keyed where a key is
// given. A failure fails the test.
void RunSql(const std::string& path, const std::string& sql, const char* key = nullptr);

// Rows of a query, columns joined by '|', NULL shown as "NULL".
std::vector<std::string> QueryRows(const std::string& path, const std::string& sql,
                                   const char* key = nullptr);

// A configuration database with the given rows, each the two values of an SQL VALUES list:
// "'chargport_number','2'".
void MakeConfig(const std::vector<std::string>& rows, const std::string& path);
// The same in the application directory, naming `ports` ports.
void MakeConfig(int ports);

void WriteText(const std::string& path, const std::string& text);
