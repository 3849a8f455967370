#include "tools/zorctl/settings/PointCsv.h"

#include <algorithm>
#include <tuple>

#include "System/Sqlite.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

// For each field of a line, the column of the table that it is for.
using ColumnOrder = std::vector<std::size_t>;

std::size_t FindColumn(const PointTable& table, const std::string& heading) {
    const std::string name = LowerCase(Trimmed(heading));
    const PointColumn* found = std::find_if(
        table.begin(), table.end(), [&name](const PointColumn& column) { return name == column.name; });
    return found != table.end() ? static_cast<std::size_t>(found - table.begin()) : kNoColumn;
}

std::string ColumnNames(const PointTable& table) {
    std::string names;
    for (const PointColumn& column : table) names += (names.empty() ? std::string() : ", ") + column.name;
    return names;
}

ColumnOrder ReadHeader(const PointTable& table, const std::vector<CsvField>& header,
                       std::vector<TextTrouble>& troubles) {
    ColumnOrder order;
    for (const CsvField& heading : header) {
        const std::size_t column = FindColumn(table, heading.text);
        if (column == kNoColumn)
            troubles.push_back({heading.at, "'" + heading.text + "' is no column: " + ColumnNames(table)});
        else if (std::find(order.begin(), order.end(), column) != order.end())
            troubles.push_back({heading.at, "column '" + heading.text + "' is there already"});
        order.push_back(column);
    }
    for (std::size_t i = 0; i < table.width; ++i)
        if (table.columns[i].MustBeGiven() && std::find(order.begin(), order.end(), i) == order.end())
            troubles.push_back({{}, std::string("column '") + table.columns[i].name + "' is missing"});
    return order;
}

PointRow ReadRow(const PointTable& table, const ColumnOrder& order, const std::vector<CsvField>& record,
                 std::vector<TextTrouble>& troubles) {
    PointRow row(table.width);
    if (record.size() != order.size())
        troubles.push_back({record.front().at, std::to_string(record.size()) + " fields, the header has " +
                                                   std::to_string(order.size())});
    for (std::size_t i = 0; i < std::min(record.size(), order.size()); ++i) {
        const PointColumn& column = table.columns[order[i]];
        std::string trouble;
        if (!record[i].text.empty())
            trouble = ToStored(column, record[i].text, row[order[i]]);
        else if (column.MustBeGiven())
            trouble = "empty";
        if (!trouble.empty()) troubles.push_back({record[i].at, column.name + (": " + trouble)});
    }
    return row;
}

TextPlace PlaceOf(const char* column, const PointTable& table, const ColumnOrder& order,
                  const std::vector<CsvField>& record) {
    const auto found = std::find(order.begin(), order.end(), FindColumn(table, column));
    return record[static_cast<std::size_t>(found - order.begin())].at;
}

}  // namespace

std::vector<TextTrouble> ReadPointCsv(const PointTable& table, const std::string& text,
                                      std::vector<PointRow>& rows, const PointJudge& judge) {
    std::vector<TextTrouble> troubles;
    std::vector<CsvField> record;
    CCsvReader reader(text);
    if (!reader.Next(record, troubles)) return {{{}, "no header line: " + ColumnNames(table)}};
    const ColumnOrder order = ReadHeader(table, record, troubles);
    const bool judgeable = troubles.empty();  // without its columns no line is
    while (judgeable && reader.Next(record, troubles)) {
        const std::size_t before = troubles.size();
        rows.push_back(ReadRow(table, order, record, troubles));
        FillDefaults(table, rows.back(), static_cast<int>(rows.size()));
        if (judge && troubles.size() == before)
            if (const std::string trouble = judge(rows.back()); !trouble.empty())
                troubles.push_back({PlaceOf("point", table, order, record), "point: " + trouble});
    }
    std::stable_sort(troubles.begin(), troubles.end(), [](const TextTrouble& a, const TextTrouble& b) {
        return std::tie(a.at.line, a.at.column) < std::tie(b.at.line, b.at.column);
    });
    return troubles;
}

std::string WritePointCsv(const PointTable& table, const CSqliteTable& settings) {
    std::string text;
    for (const PointColumn& column : table) AppendCsvField(text, column.name, &column == table.begin());
    text += '\n';
    for (int row = 0; row < settings.Rows(); ++row) {
        for (std::size_t i = 0; i < table.width; ++i)
            AppendCsvField(text, ToGiven(table.columns[i], settings.Cell(row, static_cast<int>(i))), i == 0);
        text += '\n';
    }
    return text;
}
