#include "tools/zorctl/station/EventReader.h"

#include <algorithm>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "events/EventDatabase.h"
#include "tools/zorctl/settings/StationReading.h"

std::string CEventReader::Take(std::vector<EventRow>& rows) {
    constexpr int kPageRows = 20;
    const bool first = m_last < 0;
    CSqliteDb database;
    std::string trouble = OpenToRead(database, m_directory, kEventFile, m_busyMs);
    if (!trouble.empty()) {
        // Of a file that is still to be made all rows are new.
        if (first && !Exists(m_directory, kEventFile)) m_last = 0;
        return trouble;
    }
    std::vector<EventRow> fresh;
    std::int64_t newest = 0;
    trouble = ReadNewestFirst(
        database, kSoeTable,
        [&](const CSqliteTable& page, int row) {
            const std::int64_t id = ParseInt64(page.Cell(row, kSoeId));
            newest = std::max(newest, id);
            // A table whose ids begin anew was made anew.
            if (first ? fresh.size() >= m_mostAtFirst : newest >= m_last && id <= m_last) return false;
            fresh.push_back({TextOf(page, row, kSoeTimestamp), TextOf(page, row, kSoeEvent),
                             ParseInt32(page.Cell(row, kSoeValue)), ParseInt32(page.Cell(row, kSoePoint)),
                             ParseInt32(page.Cell(row, kSoeYxTable))});
            return true;
        },
        kPageRows);
    if (trouble.empty()) m_last = newest;
    if (first && trouble.find("no such table") != std::string::npos) m_last = 0;  // the same for a table
    // Half of what is new would tear the order.
    if (trouble.empty()) rows.insert(rows.end(), fresh.rbegin(), fresh.rend());
    return trouble.empty() ? "" : PathOf(m_directory, kEventFile) + ": " + trouble;
}
