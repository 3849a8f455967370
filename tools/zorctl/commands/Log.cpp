// zorctl log: what a station has recorded; reads only, also while the station runs.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>
#include <memory>
#include <string>

#include "System/AppFiles.h"
#include "System/Sqlite.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/settings/StationReading.h"
#include "tools/zorctl/text/RowOutput.h"
#include "tools/zorctl/text/SinceText.h"

namespace {

struct LogKind {
    const char* name;
    const char* help;
    const char* file;
    const char* table;
    const char* shown;  // columns of the aligned table; all others are for CSV and JSON
};

constexpr LogKind kLogs[] = {
    {"soe", "Changes of status points", kEventFile, kSoeTable, "id timestamp yx_table point_no value event"},
    {"errors", "Measurements at the moment of a port's fault", kEventFile, kErrMsgTable,
     "id timestamp event"},
    {"history", "Hourly charging records", kHistoryFile, kYcTable,
     "id timestamp portNo sendcount mvalue fvalue tradeelec tradenumber dcK1Cnt dcK2Cnt"},
};

// Columns of any of the tables that are text even where only digits stand in them.
constexpr const char* kTextColumns[] = {"event", "timestamp", "tradenumber", "fretime"};

struct LogOptions {
    std::string directory = kAppDirectory;
    unsigned long last = std::numeric_limits<unsigned long>::max();
    std::string since;
    bool csv = false;
    bool json = false;
};

// Names come from the schema: a query without rows tells none.
std::string ReadColumns(CSqliteDb& database, const LogKind& kind, Rows& rows) {
    CSqlText<64> sql;
    sql.Format("pragma table_info(%s)", kind.table);
    const CSqliteTable columns(database, sql);
    if (!columns.Ok()) return WhyNot(columns);
    if (columns.Rows() == 0) return std::string("no table ") + kind.table;
    for (int i = 0; i < columns.Rows(); ++i) {
        const std::string name = columns.Cell(i, 1);
        rows.names.push_back(name);
        rows.numbers.push_back(std::find(std::begin(kTextColumns), std::end(kTextColumns), name) ==
                               std::end(kTextColumns));
    }
    return "";
}

RowCells CellsOf(const CSqliteTable& table, int row) {
    RowCells cells;
    for (int column = 0; column < table.Columns(); ++column) {
        const char* cell = table.Cell(row, column);
        cells.push_back(cell != nullptr ? std::optional<std::string>(cell) : std::nullopt);
    }
    return cells;
}

std::string ReadRows(CSqliteDb& database, const LogKind& kind, const LogOptions& options, Rows& rows) {
    if (std::string trouble = ReadColumns(database, kind, rows); !trouble.empty()) return trouble;
    const std::size_t width = rows.names.size();
    const auto time = static_cast<std::size_t>(std::find(rows.names.begin(), rows.names.end(), "timestamp") -
                                               rows.names.begin());
    std::string trouble = ReadNewestFirst(database, kind.table, [&](const CSqliteTable& page, int row) {
        RowCells cells = CellsOf(page, row);
        cells.resize(width);
        // Times need not fall with the ids: the clock of a unit can be set back.
        if (options.since.empty() || (time < width && cells[time].value_or("") >= options.since))
            rows.rows.push_back(std::move(cells));
        return rows.rows.size() < options.last;
    });
    std::reverse(rows.rows.begin(), rows.rows.end());
    return trouble;
}

EExit Log(const LogKind& kind, const LogOptions& options) {
    CSqliteDb database;
    if (const std::string trouble = OpenToRead(database, options.directory, kind.file); !trouble.empty())
        return Complain(trouble);
    Rows rows;
    if (const std::string trouble = ReadRows(database, kind, options, rows); !trouble.empty())
        return Complain(PathOf(options.directory, kind.file) + ": " + trouble);
    if (options.csv)
        PrintCsv(rows);
    else if (options.json)
        PrintJson(rows);
    else
        PrintAligned(rows, kind.shown);
    return EExit::Done;
}

void AddLogKind(CLI::App& parent, const LogKind& kind, EExit& result) {
    auto options = std::make_shared<LogOptions>();
    CLI::App* command = parent.add_subcommand(kind.name, kind.help);
    command->add_option("DIR", options->directory, "Directory of the databases")->capture_default_str();
    command->add_option("--last", options->last, "Only the newest N rows")
        ->check(CLI::Range(1UL, 1'000'000'000UL));
    const CLI::Validator time(
        [](std::string& given) {
            std::string since;
            if (!SinceText(given, since)) return "neither a date, a date and time, nor a span: " + given;
            given = since;
            return std::string();
        },
        "TIME");
    command
        ->add_option("--since", options->since,
                     "Only rows from then on: '2024-03-05 09:45', 90s, 10m, 2h, 3d")
        ->transform(time);
    auto* csv = command->add_flag("--csv", options->csv, "All columns as CSV");
    command->add_flag("--json", options->json, "All columns, one JSON object per line")->excludes(csv);
    command->callback([options, &kind, &result] { result = Log(kind, *options); });
}

}  // namespace

void AddLog(CLI::App& parent, EExit& result) {
    CLI::App* log = parent.add_subcommand("log", "Print what the station has recorded, oldest first");
    log->require_subcommand(1);
    for (const LogKind& kind : kLogs) AddLogKind(*log, kind, result);
}
