#include "tools/zorctl/text/RowOutput.h"

#include <algorithm>
#include <sstream>

#include "tools/zorctl/text/Csv.h"
#include "tools/zorctl/text/Json.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

std::string Shown(const std::optional<std::string>& cell) {
    return Printable(cell.value_or(""));
}

// Places of the columns that `shown` names; one that the rows do not have is left out.
std::vector<std::size_t> PlacesOf(const Rows& rows, const std::string& shown) {
    std::vector<std::size_t> places;
    std::istringstream names(shown);
    for (std::string name; names >> name;) {
        const auto found = std::find(rows.names.begin(), rows.names.end(), name);
        if (found != rows.names.end()) places.push_back(static_cast<std::size_t>(found - rows.names.begin()));
    }
    return places;
}

// `cells` with a width for each; nothing follows the last text.
std::string AlignedLine(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
                        const std::vector<bool>& right) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string gap(widths[i] - CharacterCount(cells[i]), ' ');
        if (i > 0) line += "  ";
        if (right[i])
            line += gap + cells[i];
        else
            line += i + 1 < cells.size() ? cells[i] + gap : cells[i];
    }
    return line;
}

}  // namespace

void PrintAligned(const Rows& rows, const std::string& shown) {
    const std::vector<std::size_t> places = PlacesOf(rows, shown);
    std::vector<std::vector<std::string>> lines(1);
    std::vector<bool> right;
    for (const std::size_t place : places) {
        lines[0].push_back(rows.names[place]);
        right.push_back(rows.numbers[place]);
    }
    for (const RowCells& row : rows.rows) {
        lines.emplace_back();
        for (const std::size_t place : places) lines.back().push_back(Shown(row[place]));
    }
    std::vector<std::size_t> widths(places.size());
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], CharacterCount(line[i]));
    for (const auto& line : lines)
        if (!PrintLine(AlignedLine(line, widths, right))) return;
}

void PrintCsv(const Rows& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.names.size(); ++i) AppendCsvField(text, rows.names[i], i == 0);
    text += '\n';
    for (const RowCells& row : rows.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) AppendCsvField(text, row[i].value_or(""), i == 0);
        text += '\n';
    }
    PrintData(text, EEscape::Lines);
}

void PrintJson(const Rows& rows) {
    for (const RowCells& row : rows.rows) {
        Json json = Json::object();
        for (std::size_t i = 0; i < row.size(); ++i) {
            const Json number = rows.numbers[i] && row[i] ? JsonNumber(*row[i]) : Json();
            Json& cell = json[rows.names[i]];
            if (row[i]) cell = number.is_number_integer() ? number : Json(*row[i]);
        }
        if (!PrintJson(json)) return;
    }
}
