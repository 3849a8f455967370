#include "events/EventDatabase.h"

#include <cstdio>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "events/EventStore.h"
#include "events/EventText.h"

namespace {

constexpr int kFirstSwitchingPoint = 137;
constexpr int kFirstFaultPoint = 169;

bool LiesPortsAbove(int pointNumber, int first) {
    return pointNumber > first && (pointNumber - first) % kPointsPerPort == 0;
}

}  // namespace

EventTime::EventTime(std::time_t when) {
    CDateTime(when).Write(text, sizeof text, CDateTime::kFullFormat);
}

void FormatSoeRow(EventSql& sql, std::uint32_t id, const Event& event) {
    sql.Format("INSERT INTO tagSOE values('%d','%s','%d','%d','%d','%s')", static_cast<std::int32_t>(id),
               sql.Quotable(event.text), event.value, event.pointNumber, event.table,
               EventTime(event.when).text);
}

int SwitchingCounterOf(int pointNumber, int portCount) {
    if (!LiesPortsAbove(pointNumber, kFirstSwitchingPoint)) return -1;
    const int port = (pointNumber - kFirstSwitchingPoint) / kPointsPerPort + (portCount == 1 ? 0 : 1);
    return port < kPortSlots ? port : -1;
}

int MeasuredPortBase(int pointNumber, int value) {
    return value == 1 && LiesPortsAbove(pointNumber, kFirstFaultPoint) ? pointNumber - kFirstFaultPoint : -1;
}

int CRuntimeData::InitSOE() {
    CSqliteDb database;
    database.OpenOrExit(CAppPath(kEventFile).c_str());
    CDiagLine(__func__).Print("You have opened a sqlite3 database named zorsoe.db successfully!");
    PrepareErrMsgTable(database);
    PrepareSoeTable(database);
    return 0;
}

void CRuntimeData::PrepareErrMsgTable(CSqliteDb& database) {
    const CSqliteTable table(database, "SELECT * FROM sqlite_master WHERE type='table' AND name='tagErrMsg'");
    if (!table.Ok()) {
        CDiagLine("InitSOE").Print("sqlite3_get_table Fail:\n");
    } else if (table.Rows() > 0) {
        CDiagLine("InitSOE").Print("Table tagErrMsg Exists!");
    } else {
        CDiagLine("InitSOE").Print("Table tagErrMsg Not Exists!");
        ExecEventSetUp(database, kCreateErrMsg);
    }
}

void CRuntimeData::PrepareSoeTable(CSqliteDb& database) {
    const CSqliteTable master(database, "SELECT * FROM sqlite_master WHERE type='table' AND name='tagSOE'");
    if (!master.Ok()) {
        CDiagLine("InitSOE").Print("sqlite3_get_table Fail:\n");
        return;
    }
    CDiagLine("InitSOE").Print("Line: %d, sqlite_master: nRow = %d nColumn = %d\n", __LINE__, master.Rows(),
                               master.Columns());
    if (master.Rows() > 0) {
        const CSqliteTable last(database, kSelectLastSoe);
        // A table that is locked just now is not an old one: it keeps its rows. One without an id is old.
        if (last.IsPassing()) CDiagLine("InitSOE").Print("sqlite3_get_table Fail:\n");
        if (last.IsPassing() || last.Columns() >= kSoeColumns) return;
        ExecEventSetUp(database, "DROP TABLE tagSOE");
        CDiagLine("InitSOE").Print("Table tagSOE Exists, but not new!");
    }
    CDiagLine("InitSOE").Print("Create Table tagSOE!");
    ExecEventSetUp(database, kCreateSoe);
    EventSql sql;
    FormatSoeRow(sql, 1, {"SOE database init!", 0, 0, 0, std::time(nullptr), nullptr});
    if (database.Exec(sql) != SQLITE_OK)
        std::fprintf(stderr, "insert into zorsoe.db error!: %s\n", database.Error());
}

void CRuntimeData::ExecEventSetUp(CSqliteDb& database, const char* sql) {
    if (database.Exec(sql) != SQLITE_OK)
        m_failures.Report(EFailure::EventSetUp, "cannot set up %s: %s", kEventFile, database.Error());
}

int CRuntimeData::InsertSOE(int value, int pointNumber, int table, const std::string& event) {
    CEventStore store(m_failures);
    if (!store.Open(m_eventWait)) return 0;
    CountSwitching(pointNumber, table);
    ErrorMessage measurements{};
    const int base = table == 0 ? MeasuredPortBase(pointNumber, value) : -1;
    if (base >= 0) measurements = ReadErrorMessage(*m_shm, base);
    store
        .Store({event.c_str(), value, pointNumber, table, std::time(nullptr),
                base >= 0 ? &measurements : nullptr})
        .Print();
    m_recordValue = static_cast<std::int32_t>(store.LastId());
    return 0;
}

void CRuntimeData::CountSwitching(int pointNumber, int table) {
    const int counter = SwitchingCounterOf(pointNumber, m_portCount);
    if (table != 0 || counter < 0) return;
    ++k1Cnt[static_cast<std::size_t>(counter)];
    ++k2Cnt[static_cast<std::size_t>(counter)];
}
