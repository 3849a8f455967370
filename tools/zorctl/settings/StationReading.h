// A station's databases for reading: nothing is created, and no lock is held between statements.
#pragma once

#include <functional>
#include <string>

#include "System/Sqlite.h"

// Why a query failed, in words that help where SQLite's own do not.
std::string WhyNot(const CSqliteTable& failed);

// The text of a cell, empty for NULL and for a place outside the table.
std::string TextOf(const CSqliteTable& table, int row, int column);

// The path of `file` in `directory`.
std::string PathOf(const std::string& directory, const char* file);

bool Exists(const std::string& directory, const char* file);

// All of these return an empty text, or what went wrong.

// Statements wait `busyTimeoutMs` for a file that is locked.
std::string OpenToRead(CSqliteDb& database, const std::string& directory, const char* file,
                       int busyTimeoutMs = kBusyAtStartUpMs);

// The number of ports that the configuration in `directory` gives.
std::string ReadPortCount(const std::string& directory, int& ports);

// Calls `take` for each row of `table`, whose first column is its id, from the newest on until it returns
// false. The rows come in pages, one statement each: a writer that meets one waits for far less than its busy
// timeout, however long the table is. Who stops early asks for short pages.
std::string ReadNewestFirst(CSqliteDb& database, const char* table,
                            const std::function<bool(const CSqliteTable& page, int row)>& take,
                            int pageRows = 500);
