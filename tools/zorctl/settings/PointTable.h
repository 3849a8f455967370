// The tables of the point settings as people write them: columns by name, levels and flags as words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A row of the point settings, one text per column in the order in which the process reads them.
using PointRow = std::vector<std::string>;

enum class EPointValue : std::uint8_t {
    Name,    // a text of at most `most` bytes, not empty
    Event,   // the same, and fit for the text of an event
    Whole,   // a whole number from `least` to `most`
    Offset,  // the same, and one that the process keeps exactly
    Real,
    Level,
    Flag
};

struct PointColumn {
    const char* name;
    EPointValue value;
    std::int64_t least;
    std::int64_t most;
    // What stands in the column where nothing is given: a text, or computed from what is given in `row`, the
    // `number`th of its table. With neither, the column must be given.
    const char* standard;
    std::string (*computed)(const PointRow& row, int number);

    bool MustBeGiven() const { return standard == nullptr && computed == nullptr; }
};

struct PointTable {
    const char* name;    // "yx"
    const char* select;  // all rows, as the process selects them
    const PointColumn* columns;
    std::size_t width;

    const PointColumn* begin() const { return columns; }
    const PointColumn* end() const { return columns + width; }
};

PointTable YxTable();
PointTable YcTable();

// `given` as the column stores it, in `stored`. Returns an empty text, or what is wrong with it.
std::string ToStored(const PointColumn& column, const std::string& given, std::string& stored);
// The other way round; null and an empty text are what the process makes of them. Values that no table should
// hold stay as they are.
std::string ToGiven(const PointColumn& column, const char* stored);

// Fills the columns of `row` that are empty with what stands there by default; `number` counts rows from 1.
void FillDefaults(const PointTable& table, PointRow& row, int number);
