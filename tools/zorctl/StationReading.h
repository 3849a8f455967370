// A station's databases for reading: nothing is created, and no lock is held between statements.
#pragma once

#include <functional>
#include <string>

class CSqliteDb;
class CSqliteTable;

// Why a query failed, in words that help where SQLite's own do not.
std::string WhyNot(const CSqliteTable& failed);

// All of these return an empty text, or what went wrong.

std::string OpenToRead(CSqliteDb& database, const std::string& directory, const char* file);

// The number of ports that the configuration in `directory` gives.
std::string ReadPortCount(const std::string& directory, int& ports);

// Calls `take` for each row of `table`, whose first column is its id, from the newest on until it returns
// false. The rows come in pages, one statement each: a writer that meets one waits for far less than its busy
// timeout, however long the table is.
std::string ReadNewestFirst(CSqliteDb& database, const char* table,
                            const std::function<bool(const CSqliteTable& page, int row)>& take);
