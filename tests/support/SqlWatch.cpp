#include "tests/support/SqlWatch.h"

#include <sqlite3.h>

#include <utility>

namespace {

CSqlWatch* current = nullptr;

}  // namespace

struct SqlWatchHooks {
    static int Opened(sqlite3* database, char** /*error*/, const void* /*routines*/) {
        return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, Begins, nullptr);
    }

    static int Begins(unsigned /*event*/, void* /*context*/, void* /*statement*/, void* text) {
        const std::string sql = static_cast<const char*>(text);
        if (current == nullptr || sql.rfind("--", 0) == 0) return 0;  // a comment stands for a trigger's part
        current->m_statements.push_back(sql);
        for (auto& [start, act] : current->m_before)
            if (sql.rfind(start, 0) == 0 && act) std::exchange(act, nullptr)();
        return 0;
    }

    static void (*Entry())() { return reinterpret_cast<void (*)()>(Opened); }
};

CSqlWatch::CSqlWatch() {
    current = this;
    sqlite3_auto_extension(SqlWatchHooks::Entry());
}

CSqlWatch::~CSqlWatch() {
    sqlite3_cancel_auto_extension(SqlWatchHooks::Entry());
    current = nullptr;
}

std::vector<std::string> CSqlWatch::Take() {
    return std::exchange(m_statements, {});
}
