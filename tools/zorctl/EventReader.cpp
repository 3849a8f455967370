#include "tools/zorctl/EventReader.h"

#include <sqlite3.h>

#include <memory>

namespace {

// Columns in the order of `select *`.
enum EEventColumn { kEventId, kEventText, kEventValue, kEventPoint, kEventTable };

constexpr char kSelectNewest[] = "select * from tagSOE where id = (select max(id) from tagSOE)";
constexpr char kSelectSince[] = "select * from tagSOE where id > ? order by id";

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

std::string TextOf(sqlite3_stmt* statement, int column) {
    const unsigned char* text = sqlite3_column_text(statement, column);
    return text != nullptr ? std::string(text, text + sqlite3_column_bytes(statement, column)) : "";
}

}  // namespace

std::vector<EventRow> CEventReader::Take() {
    std::vector<EventRow> rows;
    const bool first = m_last < 0;
    sqlite3* opened = nullptr;
    sqlite3_stmt* prepared = nullptr;
    int result = sqlite3_open_v2(m_path.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const Database database(opened, sqlite3_close);
    if (result == SQLITE_OK)
        result = sqlite3_prepare_v2(opened, first ? kSelectNewest : kSelectSince, -1, &prepared, nullptr);
    const Statement statement(prepared, sqlite3_finalize);
    if (result == SQLITE_OK && !first) sqlite3_bind_int64(prepared, 1, m_last);
    if (result == SQLITE_OK) result = sqlite3_step(prepared);
    // Of a file or a table that is still to be made, all rows will be new.
    if (first && (result == SQLITE_CANTOPEN || result == SQLITE_ERROR || result == SQLITE_DONE)) m_last = 0;
    for (; result == SQLITE_ROW; result = sqlite3_step(prepared)) {
        m_last = sqlite3_column_int64(prepared, kEventId);
        if (!first)
            rows.push_back({TextOf(prepared, kEventText), sqlite3_column_int(prepared, kEventValue),
                            sqlite3_column_int(prepared, kEventPoint),
                            sqlite3_column_int(prepared, kEventTable)});
    }
    return rows;
}
