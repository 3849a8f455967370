#include "tools/zorctl/text/RowOutput.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <memory>
#include <sstream>

#include "tools/zorctl/text/Csv.h"
#include "tools/zorctl/text/Output.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

constexpr std::size_t kMostDigits = 19;

std::string Shown(const std::optional<std::string>& cell) {
    return Printable(AsUtf8(cell.value_or("")));
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

// As JSON writes a whole number.
bool IsJsonNumber(const std::string& text) {
    const std::size_t sign = text[0] == '-' ? 1 : 0;
    const std::size_t digits = text.size() - sign;
    return digits > 0 && digits <= kMostDigits && (digits == 1 || text[sign] != '0') &&
           text.find_first_not_of("0123456789", sign) == std::string::npos;
}

cJSON* JsonCell(const std::optional<std::string>& cell, bool number) {
    if (!cell) return cJSON_CreateNull();
    // As text: 64-bit values would lose digits on the way through a double.
    return number && IsJsonNumber(*cell) ? cJSON_CreateRaw(cell->c_str())
                                         : cJSON_CreateString(AsUtf8(*cell).c_str());
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

std::string CsvLines(const Rows& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.names.size(); ++i) AppendCsvField(text, rows.names[i], i == 0);
    text += '\n';
    for (const RowCells& row : rows.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) AppendCsvField(text, row[i].value_or(""), i == 0);
        text += '\n';
    }
    return text;
}

void PrintJsonLines(const Rows& rows) {
    for (const RowCells& row : rows.rows) {
        const std::unique_ptr<cJSON, void (*)(cJSON*)> object(cJSON_CreateObject(), cJSON_Delete);
        for (std::size_t i = 0; i < row.size(); ++i)
            cJSON_AddItemToObject(object.get(), rows.names[i].c_str(), JsonCell(row[i], rows.numbers[i]));
        const std::unique_ptr<char, void (*)(void*)> line(cJSON_PrintUnformatted(object.get()), cJSON_free);
        if (line == nullptr || !PrintJson(line.get())) return;
    }
}
