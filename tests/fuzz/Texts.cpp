// Any text as each of the files and arguments that zorctl reads.
#include "tests/fuzz/Fuzz.h"
#include "tools/zorctl/scenario/Scenario.h"
#include "tools/zorctl/settings/PointCsv.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"
#include "tools/zorctl/text/SinceText.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
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
    Require(ReadHex(text, bytes) <= size && 2 * bytes.size() <= size, "more bytes than digits");
    BcdDate date;
    std::string since;
    Require(!ParseDate(text, date) || SinceText(text, since), "date that is none");
    Require(IsUtf8(Printable(text)), "no UTF-8");
    return 0;
}
