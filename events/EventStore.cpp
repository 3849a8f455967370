#include "events/EventStore.h"

#include <cstdio>
#include <new>
#include <utility>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "events/EventDatabase.h"
#include "events/EventText.h"

namespace {

// The two tables keep about this many rows: once the last id has passed it, every insert drops what lies
// further back.
constexpr std::uint32_t kKeptIds = 99999;
constexpr std::uint32_t kPruneDistance = 100001;

constexpr char kOperation[] = "InsertSOE";

// A copy of an error text, or a word in its place where there is no memory for it.
std::string Kept(const char* error) {
    try {
        return error;
    } catch (const std::bad_alloc&) {
        return "no memory";  // short enough to need none
    }
}
constexpr char kInsertComplaint[] = "insert into zorsoe.db";

// Takes the id of the newest row from a result that holds it.
std::uint32_t LastIdIn(const CSqliteTable& table) {
    return static_cast<std::uint32_t>(ParseInt32(table.Cell(0, 0)));
}

void FormatPruning(EventSql& sql, const char* table, std::uint32_t lastId) {
    sql.Format("DELETE FROM %s WHERE id<=%d", table, static_cast<std::int32_t>(lastId - kPruneDistance));
}

}  // namespace

void EventFindings::Print() const {
    if (!errMsgReadError.empty())
        CDiagLine(kOperation)
            .Print("read record from zorsoe tagErrMsg error!: %s\n", errMsgReadError.c_str());
    if (prunedErrMsg != 0) {
        EventSql sql;
        FormatPruning(sql, kErrMsgTable, prunedErrMsg);
        CDiagLine(kOperation).Print("delete sqlcommand is %s\n", sql.Text());
    }
    if (!soeReadError.empty())
        CDiagLine(kOperation).Print("read record from zorsoe.db error!: %s\n", soeReadError.c_str());
    if (hasLast) CDiagLine(kOperation).Print("the last record id is %d\n", static_cast<std::int32_t>(lastId));
    std::fputs(errors.c_str(), stderr);
}

void EventFindings::Complain(const char* what, const char* error) {
    char line[512];
    std::snprintf(line, sizeof line, "%s error!: %s\n", what, error);
    try {
        errors += line;
    } catch (const std::bad_alloc&) {
        std::fputs(line, stderr);
    }
}

bool CEventStore::Open(CBusyWait& wait) {
    m_wait = &wait;
    return m_database.Open(CAppPath(kEventFile).c_str(), wait) == SQLITE_OK;
}

void CEventStore::Begin() {
    m_busy = false;
    m_vacuumDue = false;
    m_writtenId = 0;
    NoteBusy(m_transaction.Begin());
}

bool CEventStore::Commit() {
    if (NoteBusy(m_transaction.Commit()) != SQLITE_OK) {
        m_vacuumDue = false;
        if (m_busy || m_writtenId == 0) return false;
        CSqlText<64> sql;
        sql.Format("select id from %s where id=%u", kSoeTable, m_writtenId);
        if (!m_transaction.IsStoredAfterAll(CAppPath(kEventFile).c_str(), *m_wait, sql)) return false;
    }
    if (std::exchange(m_vacuumDue, false)) {
        EventFindings findings;
        Vacuum(findings);
        findings.Print();
    }
    return true;
}

void CEventStore::RollBack() {
    m_transaction.RollBack();
    m_vacuumDue = false;
}

EventFindings CEventStore::Store(const Event& event) {
    EventFindings findings;
    std::uint32_t lastId = 0;
    if (event.measurements != nullptr) lastId = StoreMeasurements(event, findings);
    if (HasDied()) return findings;

    if (FindLastSoe(findings, lastId) && lastId > kKeptIds)
        Prune(kSoeTable, lastId, "delete state chage record from zorsoe.db", findings);
    m_seenId = lastId;
    if (HasDied()) return findings;
    // Without a row to follow there is no id; one that measurements have just left serves as well.
    if (lastId == 0) {
        if (!m_busy)
            m_failures.Report(EFailure::EventsLost, "%s takes no events: no row to follow", kEventFile);
        return findings;
    }
    EventSql sql;
    FormatSoeRow(sql, lastId + 1, event);
    if (Write(sql) == SQLITE_OK)
        m_writtenId = lastId + 1;
    else
        findings.Complain(kInsertComplaint, WriteError());
    return findings;
}

void CEventStore::Refuse(const Event& event) {
    m_refusing = true;
    Store(event).Print();
    m_refusing = false;
}

// Once the file was busy nothing is written any more: an event that is stored behind one that waits would
// stand in the wrong order, and half an event would be stored twice.
int CEventStore::Write(const CSqlTextBase& sql) {
    return m_refusing || m_busy ? SQLITE_BUSY : NoteBusy(m_database.Exec(sql));
}

const char* CEventStore::WriteError() const {
    return m_refusing || m_busy ? sqlite3_errstr(SQLITE_BUSY) : m_database.Error();
}

int CEventStore::NoteBusy(int result) {
    m_busy = m_busy || result == SQLITE_BUSY;
    return result;
}

// Puts the id of the newest row into `lastId`; false where there is none or it cannot be read.
bool CEventStore::FindLastSoe(EventFindings& findings, std::uint32_t& lastId) {
    // Nobody else writes during the transaction: the newest row is the one that it wrote last.
    if (IsTogether() && m_writtenId != 0) {
        lastId = m_writtenId;
    } else {
        const CSqliteTable last(m_database, kSelectLastSoe);
        NoteBusy(last.Result());
        if (!last.Ok()) {
            findings.soeReadError = Kept(last.Error());
            if (!m_busy)
                m_failures.Report(EFailure::EventsLost, "%s takes no events: %s", kEventFile, last.Error());
        }
        if (last.Rows() == 0) return false;
        lastId = LastIdIn(last);
    }
    findings.hasLast = true;
    findings.lastId = lastId;
    return true;
}

// Returns the id of the newest row that was there before, 0 for none.
std::uint32_t CEventStore::StoreMeasurements(const Event& event, EventFindings& findings) {
    std::uint32_t lastId = 0;
    {
        const CSqliteTable last(m_database, kSelectLastErrMsg);
        NoteBusy(last.Result());
        if (!last.Ok()) findings.errMsgReadError = Kept(last.Error());
        if (last.Rows() > 0) lastId = LastIdIn(last);
    }
    if (lastId > kKeptIds) {
        findings.prunedErrMsg = lastId;
        Prune(kErrMsgTable, lastId, "delete ErrMsg from zorsoe.db", findings);
    }
    if (HasDied()) return lastId;
    EventSql sql;
    sql.Format("INSERT INTO tagErrMsg(event, timestamp) values('%s','%s')", event.measurements->text,
               EventTime(event.when).text);
    findings.measured = Write(sql) == SQLITE_OK;
    if (!findings.measured) findings.Complain(kInsertComplaint, WriteError());
    return lastId;
}

void CEventStore::Prune(const char* table, std::uint32_t lastId, const char* complaint,
                        EventFindings& findings) {
    EventSql sql;
    FormatPruning(sql, table, lastId);
    if (Write(sql) != SQLITE_OK) findings.Complain(complaint, WriteError());
    Vacuum(findings);
}

// VACUUM cannot run in a transaction: in one it waits for the commit, and runs once for all.
void CEventStore::Vacuum(EventFindings& findings) {
    if (IsTogether()) {
        m_vacuumDue = true;
        return;
    }
    EventSql sql;
    sql.Format("VACUUM");
    if (Write(sql) != SQLITE_OK) findings.Complain("VACUUM", WriteError());
}
