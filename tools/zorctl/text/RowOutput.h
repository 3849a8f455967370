// Rows of a database as people and programs read them.
#pragma once

#include <optional>
#include <string>
#include <vector>

using RowCells = std::vector<std::optional<std::string>>;  // without a value: NULL

struct Rows {
    std::vector<std::string> names;  // of the columns
    std::vector<bool> numbers;       // which of them hold numbers
    std::vector<RowCells> rows;
};

// Prints columns side by side below their names, those of `shown` (names with blanks between) in that order;
// numbers stand at the right.
void PrintAligned(const Rows& rows, const std::string& shown);
// Prints all columns, the names first.
void PrintCsv(const Rows& rows);
// Prints all columns, one object per line.
void PrintJson(const Rows& rows);
