// CSV lines as rows of the point settings, for status and telemetry points alike; the first byte is the
// number of ports.
#include <algorithm>
#include <cstring>
#include <memory>

#include "points/PointSettings.h"
#include "tests/fuzz/Fuzz.h"
#include "tools/zorctl/settings/PointCsv.h"

// Rows as a query gives them; empty values become NULL, short rows are filled up.
static std::string SelectValues(const std::vector<PointRow>& rows) {
    std::size_t width = 1;
    for (const PointRow& row : rows) width = std::max(width, row.size());
    std::string sql;
    for (const PointRow& row : rows) {
        sql += sql.empty() ? "VALUES" : ",";
        for (std::size_t i = 0; i < width; ++i) {
            const char* value = i < row.size() && !row[i].empty() ? row[i].c_str() : nullptr;
            const std::unique_ptr<char, void (*)(void*)> quoted(sqlite3_mprintf("%Q", value), sqlite3_free);
            sql += (i == 0 ? '(' : ',') + std::string(quoted.get());
        }
        sql += ')';
    }
    return rows.empty() ? "SELECT 1 WHERE 0" : sql;
}

// Appends each row as the process takes it. What export writes and init reads has to mean the same.
template <typename Record, typename Append>
static void TryRows(const PointTable& table, const std::vector<PointRow>& rows,
                    Record parse(const CSqliteTable& table, int row), Append append) {
    CSqliteDb database;
    database.Open(":memory:", 0);
    const CSqliteTable given(database, SelectValues(rows).c_str());
    Require(given.Rows() == static_cast<int>(rows.size()), "rows that cannot be selected");
    std::vector<PointRow> read;
    const bool kept = ReadPointCsv(table, WritePointCsv(table, given), read).empty();
    const CSqliteTable again(database, SelectValues(read).c_str());
    for (int row = 0; row < given.Rows(); ++row) {
        const Record record = parse(given, row);
        const Record same = parse(again, row);
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): records are zero before they are filled
        Require(!kept || std::memcmp(&record, &same, sizeof record) == 0, "row that CSV changes");
        append(record);
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzStation& station = FuzzStation::WithPorts(size > 0 ? data[0] : 1);
    CTestRuntime& runtime = station.runtime;
    const std::string text(data + (size > 0 ? 1 : 0), data + size);
    std::vector<PointRow> rows;
    std::vector<TextTrouble> troubles;
    std::vector<CsvField> record;
    for (CCsvReader reader(text); reader.Next(record, troubles);) {
        rows.emplace_back();
        for (const CsvField& field : record) rows.back().push_back(field.text);
    }
    TryRows(YxTable(), rows, ParseYxRow,
            [&](const auto& point) { AppendYxPoint(runtime.m_yxPoints, point, runtime.m_portCount); });
    TryRows(YcTable(), rows, ParseYcRow,
            [&](const auto& point) { AppendYcPoint(runtime.m_ycGroups, point, runtime.m_portCount); });
    runtime.SelectReportedPoints();
    runtime.FindReportedPoints();
    for (const YxPointRecord& point : runtime.m_yxPoints) {
        auto* entry =
            station.Entry(point.source == kSourceYx ? CShmLayout::kYx : CShmLayout::kYx2, point.pointNumber);
        if (entry != nullptr) entry[kYxState] = 1;
    }
    station.Tick();
    station.Clear();
    return 0;
}
