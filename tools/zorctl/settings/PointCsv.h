// Point tables as CSV: a header line of column names in any order, then one point per line.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/zorctl/settings/PointTable.h"
#include "tools/zorctl/text/Csv.h"

class CSqliteTable;

// What is wrong with the point number of a row; empty where nothing is.
using PointJudge = std::function<std::string(const PointRow& row)>;

// Appends the points in `text` to `rows`; columns and values that are not given take their defaults. Returns
// everything that is wrong with the text, in its order; the rows are then of no use.
std::vector<TextTrouble> ReadPointCsv(const PointTable& table, const std::string& text,
                                      std::vector<PointRow>& rows, const PointJudge& judge = {});

// All columns in their order and all rows of `settings`, read by position.
std::string WritePointCsv(const PointTable& table, const CSqliteTable& settings);
