#include "tools/zorctl/station/EventReader.h"

#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "events/EventDatabase.h"

std::vector<EventRow> CEventReader::Take() {
    std::vector<EventRow> rows;
    const bool first = m_last < 0;
    CSqliteDb database;
    if (const int opened = database.OpenForReading(m_path.c_str(), 0); opened != SQLITE_OK) {
        if (first && opened == SQLITE_CANTOPEN)
            m_last = 0;  // of a file that is still to be made, all rows are new
        return rows;
    }
    CSqlText<96> since;
    since.Format("select * from %s where id > %lld order by id", kSoeTable, static_cast<long long>(m_last));
    const CSqliteTable table(database, first ? kSelectLastSoe : since.Text());
    // The same for a table.
    if (first && (table.Result() == SQLITE_ERROR || (table.Ok() && table.Rows() == 0))) m_last = 0;
    for (int row = 0; row < table.Rows(); ++row) {
        m_last = ParseInt64(table.Cell(row, kSoeId));
        const char* text = table.Cell(row, kSoeEvent);
        if (!first)
            rows.push_back({text != nullptr ? text : "", ParseInt32(table.Cell(row, kSoeValue)),
                            ParseInt32(table.Cell(row, kSoePoint)),
                            ParseInt32(table.Cell(row, kSoeYxTable))});
    }
    return rows;
}
