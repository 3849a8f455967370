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

// Columns side by side below their names, those of `shown` (names with blanks between) in that order;
// numbers stand at the right.
std::string AlignedText(const Rows& rows, const std::string& shown);
// All columns, the names first.
std::string CsvLines(const Rows& rows);
// All columns, one object per line.
std::string JsonLines(const Rows& rows);
