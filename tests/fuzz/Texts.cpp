// Any text as each of the files and arguments that zorctl reads, and behind the first byte, the number of
// ports, as CSV of the rows of the point settings, for status and telemetry points alike.
#include <memory>

#include "points/PointSettings.h"
#include "tests/fuzz/Fuzz.h"
#include "tools/zorctl/scenario/Scenario.h"
#include "tools/zorctl/settings/PointCsv.h"
#include "tools/zorctl/text/Csv.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"
#include "tools/zorctl/text/SinceText.h"

// The lines as a query's rows, of as many columns as the widest table has; empty values become NULL.
static std::string SelectLines(const std::string& text) {
    std::string sql;
    std::vector<TextTrouble> troubles;
    std::vector<CsvField> record;
    for (CCsvReader reader(text); reader.Next(record, troubles);) {
        record.resize(kYcRealD + 1);
        const char* before = sql.empty() ? "VALUES(" : ",(";
        for (const CsvField& field : record) {
            const char* value = field.text.empty() ? nullptr : field.text.c_str();
            const std::unique_ptr<char, void (*)(void*)> quoted(sqlite3_mprintf("%Q", value), sqlite3_free);
            sql += std::exchange(before, ",") + std::string(quoted.get());
        }
        sql += ')';
    }
    return sql.empty() ? "SELECT 1 WHERE 0" : sql;
}

static void ReadAsFileOrArgument(const std::string& text) {
    for (const PointTable& table : {YxTable(), YcTable()}) {
        std::vector<PointRow> rows;
        ReadPointCsv(table, text, rows);
        for (const PointRow& row : rows) Require(row.size() == table.width, "row of another width");
    }
    std::vector<std::string> faults;
    const Scenario scenario = ParseScenario("file", text, faults);
    for (const ScenarioLine& line : scenario.lines)
        Require(line.offset.count() >= 0 && line.secondOfDay.value_or(0) < 24 * 3600, "line out of its time");
    std::vector<std::uint8_t> bytes;
    Require(ReadHex(text, bytes) <= text.size() && 2 * bytes.size() <= text.size(), "more bytes than digits");
    BcdDate date;
    std::string since;
    Require(!ParseDate(text, date) || SinceText(text, since), "date that is none");
    Require(IsUtf8(Printable(text)), "no UTF-8");
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ReadAsFileOrArgument(std::string(data, data + size));
    FuzzStation& station = FuzzStation::WithPorts(size > 0 ? data[0] : 1);
    CTestRuntime& runtime = station.runtime;
    CSqliteDb database;
    database.Open(":memory:", 0);
    const CSqliteTable rows(database,
                            SelectLines(std::string(data + (size > 0 ? 1 : 0), data + size)).c_str());
    Require(rows.Ok(), rows.Error());
    for (int row = 0; row < rows.Rows(); ++row) {
        AppendYxPoint(runtime.m_yxPoints, ParseYxRow(rows, row), runtime.m_portCount);
        AppendYcPoint(runtime.m_ycGroups, ParseYcRow(rows, row), runtime.m_portCount);
    }
    runtime.SelectReportedPoints();
    runtime.FindReportedPoints();
    for (const YxPointRecord& point : runtime.m_yxPoints)
        if (station.live.getYx(point.pointNumber) != nullptr) station.live.SetSignal(point.pointNumber, 1);
    station.Tick();
    return 0;
}
