#include "tests/support/SqlWatch.h"

void CSqlWatch::Watch(CSqlWatch* watch) {
    static CSqlWatch* current = nullptr;
    current = watch;
    const auto opened = [](sqlite3* database, char** /*error*/, const void* /*routines*/) {
        const auto begins = [](unsigned, void*, void*, void* text) {
            if (current != nullptr) current->Begins(static_cast<const char*>(text));
            return 0;
        };
        return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, begins, nullptr);
    };
    int (*const entry)(sqlite3*, char**, const void*) = opened;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(entry));  // the same one again changes nothing
}

void CSqlWatch::Begins(const std::string& sql) {
    if (sql.rfind("--", 0) == 0) return;  // a comment stands for a trigger's part
    m_statements.push_back(sql);
    for (auto& [start, act] : m_before)
        if (sql.rfind(start, 0) == 0 && act) std::exchange(act, nullptr)();
}
