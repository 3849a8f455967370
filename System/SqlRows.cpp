#include "System/SqlRows.h"

int CSqlRows::Arrived(void* rows, int columns, char** cells, char** /*names*/) {
    auto& self = *static_cast<CSqlRows*>(rows);
    self.m_takeRow(self.m_take, self.m_count++, {cells, columns});
    return 0;
}

void CSqlRows::Run(CSqliteDb& database, const char* sql, TakeRow takeRow, void* take) {
    m_takeRow = takeRow;
    m_take = take;
    m_result = sqlite3_exec(database.m_handle, sql, Arrived, this, &m_error);
    if (!Ok()) m_count = 0;
}
