#include "events/EventDatabase.h"

#include <cstdio>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "events/EventText.h"

namespace {

// The two tables keep about this many rows: once the last id has passed it, every insert drops what lies
// further back.
constexpr std::uint32_t kKeptIds = 99999;
constexpr std::uint32_t kPruneDistance = 100001;

constexpr int kFirstSwitchingPoint = 137;
constexpr int kFirstFaultPoint = 169;
constexpr std::size_t kSqlSize = 2048;
using EventSql = CSqlText<kSqlSize>;

// The current time as the tables store it.
struct Timestamp {
    char text[32];
    Timestamp() { CDateTime::Now().Write(text, sizeof text, CDateTime::kFullFormat); }
};

bool LiesPortsAbove(int pointNumber, int first) {
    return pointNumber > first && (pointNumber - first) % kPointsPerPort == 0;
}

// Takes the id of the newest row from a result that holds it.
std::uint32_t LastId(const CSqliteTable& table) {
    return static_cast<std::uint32_t>(ParseInt32(table.Cell(0, 0)));
}

void ReportInsertFailure(const CSqliteDb& database) {
    std::fprintf(stderr, "insert into zorsoe.db error!: %s\n", database.Error());
}

void Vacuum(CSqliteDb& database) {
    if (database.Exec("VACUUM") != SQLITE_OK) std::fprintf(stderr, "VACUUM error!: %s\n", database.Error());
}

void FormatSoeRow(EventSql& sql, std::uint32_t id, const char* event, int value, int pointNumber, int table) {
    sql.Format("INSERT INTO tagSOE values('%d','%s','%d','%d','%d','%s')", static_cast<std::int32_t>(id),
               sql.Quoted(event), value, pointNumber, table, Timestamp().text);
}

}  // namespace

int SwitchingCounterOf(int pointNumber, int portCount) {
    if (!LiesPortsAbove(pointNumber, kFirstSwitchingPoint)) return -1;
    const int port = (pointNumber - kFirstSwitchingPoint) / kPointsPerPort + (portCount == 1 ? 0 : 1);
    return port < kPortSlots ? port : -1;
}

int ErrorSnapshotBase(int pointNumber, int value) {
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
        if (last.NotNow()) CDiagLine("InitSOE").Print("sqlite3_get_table Fail:\n");
        if (last.NotNow() || last.Columns() >= kSoeColumns) return;
        ExecEventSetUp(database, "DROP TABLE tagSOE");
        CDiagLine("InitSOE").Print("Table tagSOE Exists, but not new!");
    }
    CDiagLine("InitSOE").Print("Create Table tagSOE!");
    ExecEventSetUp(database, kCreateSoe);
    EventSql sql;
    FormatSoeRow(sql, 1, "SOE database init!", 0, 0, 0);
    if (database.Exec(sql) != SQLITE_OK) ReportInsertFailure(database);
}

void CRuntimeData::ExecEventSetUp(CSqliteDb& database, const char* sql) {
    if (database.Exec(sql) != SQLITE_OK)
        m_failures.Report(EFailure::EventSetUp, "cannot set up %s: %s", kEventFile, database.Error());
}

void CRuntimeData::BeginEventWalk() {
    m_walk.active = true;
}

void CRuntimeData::EndEventWalk() {
    m_walk.active = false;
    if (m_walk.changes.empty()) return;
    if (m_walk.together) {
        if (m_walk.database.Exec("commit transaction") != SQLITE_OK)
            StoreChangesSingly();
        else if (m_walk.vacuumDue)
            Vacuum(m_walk.database);
    }
    m_walk.together = false;
    m_walk.vacuumDue = false;
    m_walk.database.Close();
    m_walk.changes.clear();
}

// Opens the walk's connection at its first event. Where a transaction cannot be had (a file that is
// read-only, or locked for too long), each event stands by itself and fails or succeeds with its own
// messages.
bool CRuntimeData::OpenForWalk() {
    if (m_walk.database.IsOpen()) return true;
    if (m_walk.database.Open(CAppPath(kEventFile).c_str(), kBusyInLoopMs) != SQLITE_OK) return false;
    m_walk.database.Exec("begin immediate transaction");
    m_walk.together = m_walk.database.InTransaction();
    m_walk.lastId = 0;
    return true;
}

int CRuntimeData::InsertSOE(int value, int pointNumber, int table, const std::string& event) {
    CSqliteDb own;
    CSqliteDb& database = m_walk.active ? m_walk.database : own;
    if (m_walk.active ? !OpenForWalk() : own.Open(CAppPath(kEventFile).c_str(), kBusyInLoopMs) != SQLITE_OK) {
        m_walk.changes.clear();  // lost, and not to be written again with what follows
        return 0;
    }
    if (const int counter = SwitchingCounterOf(pointNumber, m_portCount); table == 0 && counter >= 0) {
        ++k1Cnt[static_cast<std::size_t>(counter)];
        ++k2Cnt[static_cast<std::size_t>(counter)];
    }
    StoreEvent(database, value, pointNumber, table, event.c_str());
    if (WalkCameToNothing()) StoreChangesSingly();
    return 0;
}

// A full disk, for one, ends the transaction unasked, at whatever statement, and takes the events before it
// with it.
bool CRuntimeData::WalkCameToNothing() const {
    return m_walk.together && !m_walk.database.InTransaction();
}

// Writes the events of the walk once more, each by itself, after their common transaction came to nothing.
void CRuntimeData::StoreChangesSingly() {
    if (m_walk.database.InTransaction()) m_walk.database.Exec("rollback transaction");
    m_walk.together = false;
    for (const StatusChange& change : m_walk.changes) {
        const YxPointRecord& point = *change.point;
        WriteEventText(m_eventText, point.level, point.name, change.rising);
        StoreEvent(m_walk.database, change.value, point.pointNumber, point.source == kSourceYx2 ? 1 : 0,
                   m_eventText.c_str());
    }
}

void CRuntimeData::StoreEvent(CSqliteDb& database, int value, int pointNumber, int table, const char* event) {
    std::uint32_t lastId = 0;
    if (const int base = ErrorSnapshotBase(pointNumber, value); table == 0 && base >= 0)
        lastId = StoreErrorMessage(database, base);
    if (WalkCameToNothing()) return;

    if (FindLastSoe(database, lastId)) {
        if (lastId > kKeptIds) PruneSoe(database, lastId);
        CDiagLine("InsertSOE").Print("the last record id is %d\n", static_cast<std::int32_t>(lastId));
    }
    m_recordValue = static_cast<std::int32_t>(lastId);
    if (WalkCameToNothing()) return;
    // Without a row to follow there is no id; one that an error message has just left serves as well.
    if (lastId == 0) return;
    EventSql sql;
    FormatSoeRow(sql, lastId + 1, event, value, pointNumber, table);
    if (database.Exec(sql) != SQLITE_OK)
        ReportInsertFailure(database);
    else
        m_walk.lastId = lastId + 1;
}

// Puts the id of the newest row into `lastId`; false where there is none or it cannot be read.
bool CRuntimeData::FindLastSoe(CSqliteDb& database, std::uint32_t& lastId) {
    // Nobody else writes during the walk's transaction: the newest row is the one that it wrote last.
    if (m_walk.together && m_walk.lastId != 0) {
        lastId = m_walk.lastId;
        return true;
    }
    const CSqliteTable last(database, kSelectLastSoe);
    if (!last.Ok()) CDiagLine("InsertSOE").Print("read record from zorsoe.db error!: %s\n", last.Error());
    if (last.Rows() == 0) return false;
    lastId = LastId(last);
    return true;
}

// Records the measurements of a port. Returns the id of the newest row that was there before, 0 for none.
std::uint32_t CRuntimeData::StoreErrorMessage(CSqliteDb& database, int base) {
    std::uint32_t lastId = 0;
    {
        const CSqliteTable last(database, kSelectLastErrMsg);
        if (!last.Ok())
            CDiagLine("InsertSOE").Print("read record from zorsoe tagErrMsg error!: %s\n", last.Error());
        if (last.Rows() > 0) lastId = LastId(last);
    }
    if (lastId > kKeptIds) PruneErrMsg(database, lastId);
    if (WalkCameToNothing()) return lastId;
    EventSql sql;
    sql.Format("INSERT INTO tagErrMsg(event, timestamp) values('%s','%s')",
               ReadErrorMessage(*m_shm, base).text, Timestamp().text);
    if (database.Exec(sql) != SQLITE_OK) ReportInsertFailure(database);
    return lastId;
}

void CRuntimeData::PruneErrMsg(CSqliteDb& database, std::uint32_t lastId) {
    EventSql sql;
    sql.Format("DELETE FROM tagErrMsg WHERE id<=%d", static_cast<std::int32_t>(lastId - kPruneDistance));
    CDiagLine("InsertSOE").Print("delete sqlcommand is %s\n", sql.Text());
    if (database.Exec(sql) != SQLITE_OK)
        std::fprintf(stderr, "delete ErrMsg from zorsoe.db error!: %s\n", database.Error());
    VacuumSoon(database);
}

void CRuntimeData::PruneSoe(CSqliteDb& database, std::uint32_t lastId) {
    EventSql sql;
    sql.Format("DELETE FROM tagSOE WHERE id<=%d", static_cast<std::int32_t>(lastId - kPruneDistance));
    if (database.Exec(sql) != SQLITE_OK)
        std::fprintf(stderr, "delete state chage record from zorsoe.db error!: %s\n", database.Error());
    VacuumSoon(database);
}

// VACUUM cannot run in a transaction: in one it waits for the commit, and runs once for all.
void CRuntimeData::VacuumSoon(CSqliteDb& database) {
    if (m_walk.together)
        m_walk.vacuumDue = true;
    else
        Vacuum(database);
}
