// The charging records of a full hour: written to the history, and posted live.
#include <cstdio>
#include <cstring>
#include <iterator>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"

namespace {

constexpr char kOperation[] = "InsertYC";
using InsertSql = CSqlText<1024>;

// Of the twelve points that a record has slots for, the last two (charge count and charge time) are not read:
// their slots stay 0, and the first one is read for nothing. zor_main's side counts on it.
constexpr int kRecordPoints[] = {173, 192, 193, 194, 195, 153, 154, 156, 157, 158, 211, 212};
constexpr std::size_t kPointsRead = 10;
constexpr std::size_t kFreTimeSlot = 5;

// What one row is made of.
struct RowValues {
    long long slots[std::size(kRecordPoints)] = {};
    long long energy = 0;
    char fretime[31] = {};
    char tradenumber[2 * kTradeNumberSize + 1] = {};
    std::int32_t tradeelec = 0;
};

RowValues ReadRowValues(CShmCTRL& shm, int port) {
    const int base = PortBase(port);
    RowValues values;
    for (std::size_t i = 0; i < kPointsRead; ++i) {
        const LiveYc live = shm.Yc(base + kRecordPoints[i]);
        values.slots[i] = live.raw;
        if (i == kFreTimeSlot) std::memcpy(values.fretime, live.area, sizeof values.fretime - 1);
    }
    values.energy = static_cast<long long>(shm.Counter(CounterBase(port)));
    const LiveYc trade = shm.Yc(base + kYcTradeNumber);
    for (std::size_t i = 0; i < kTradeNumberSize; ++i)
        std::snprintf(values.tradenumber + 2 * i, 3, "%02x", unsigned{trade.area[i]});
    values.tradeelec = static_cast<std::int32_t>(shm.Yc(base + kYcTradeEnergy).raw);
    return values;
}

// Writes one record; a failure is printed and loses it.
int StoreRecord(CSqliteDb& database, const InsertSql& sql) {
    const int result = database.Exec(sql);
    if (result != SQLITE_OK) std::fprintf(stderr, "insert into zorycdata.db error!: %s\n", database.Error());
    return result;
}

// The records of one hour in one transaction: a commit for each port would stall the loop for long on flash.
// Where no transaction can be had each record stands by itself.
class CHourTransaction {
  public:
    explicit CHourTransaction(CSqliteDb& database) : m_database(database) {
        m_database.Exec("begin immediate transaction");
        m_together = m_database.InTransaction();
    }

    // Writes one record. False when it is lost, which has been said.
    bool Store(const InsertSql& sql) {
        if (HasDied()) return true;  // it comes again, with all others
        if (m_database.Exec(sql) == SQLITE_OK) {
            m_lastRow = sqlite3_last_insert_rowid(m_database.Handle());
            return true;
        }
        if (HasDied()) return true;
        std::fprintf(stderr, "insert into zorycdata.db error!: %s\n", m_database.Error());
        return false;
    }
    // True when the records stand in the file. False when the transaction has come to nothing, at whatever
    // statement, and took its records with it.
    bool Commit(CBusyWait& wait) {
        if (!m_together) return true;
        if (HasDied()) return false;
        if (m_database.Exec("commit transaction") == SQLITE_OK) return true;
        if (m_database.InTransaction()) m_database.Exec("rollback transaction");
        // A commit can fail after the fact, in giving up its lock. Only a new connection tells.
        if (m_lastRow == 0 || m_database.Open(CAppPath(kHistoryFile).c_str(), wait) != SQLITE_OK)
            return false;
        CSqlText<128> sql;
        sql.Format("SELECT count(*) FROM tagYC WHERE rowid=%lld", static_cast<long long>(m_lastRow));
        const CSqliteTable found(m_database, sql);
        return found.Rows() == 1 && std::strcmp(found.Cell(0, 0), "1") == 0;
    }

  private:
    // A full disk, for one, ends a transaction unasked.
    bool HasDied() const { return m_together && !m_database.InTransaction(); }

    CSqliteDb& m_database;
    bool m_together = false;
    sqlite3_int64 m_lastRow = 0;
};

}  // namespace

void CRuntimeData::FormatRecord(CSqlTextBase& sql, std::uint32_t hour, std::uint32_t port) {
    const RowValues values = ReadRowValues(*m_shm, static_cast<int>(port));
    const long long* slot = values.slots;
    sql.Format(
        "INSERT INTO "
        "tagYC(portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,fvalue_1,fvalue_2,"
        "fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) "
        "values('%d','%d','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%s','%d','%"
        "s','%lld',"
        "'%lld','%d','%d')",
        static_cast<int>(port), hour == 0 ? kFirstPending : 0, values.energy, slot[1], slot[2], slot[3],
        slot[4], slot[5], slot[6], slot[7], slot[8], slot[9], values.tradenumber, values.tradeelec,
        sql.Quotable(values.fretime), slot[10], slot[11], k1Cnt[port], k2Cnt[port]);
}

std::int32_t CRuntimeData::InsertYC(std::uint32_t hour, std::uint32_t port) {
    InsertSql sql;
    FormatRecord(sql, hour, port);
    CSqliteDb database;
    if (const int result = database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait); result != SQLITE_OK)
        return result;
    CDiagLine(kOperation).Print("InsertYc You have opened zorycdata.db successfully!");
    CDiagLine(kOperation).Print("sqlcommand is %s\n", sql.Text());
    return StoreRecord(database, sql);
}

void CRuntimeData::RecordHour(std::uint32_t hour) {
    const PortRange ports = PortsOf(m_portCount);
    CSqliteDb database;
    const bool opened = database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait) == SQLITE_OK;
    InsertSql records[kPortSlots];
    bool lost[kPortSlots] = {};
    CHourTransaction transaction(database);
    for (int i = ports.first; i <= ports.last; ++i) {
        const auto port = static_cast<std::uint32_t>(i);
        if (opened) {
            FormatRecord(records[i], hour, port);
            CDiagLine(kOperation).Print("InsertYc You have opened zorycdata.db successfully!");
            CDiagLine(kOperation).Print("sqlcommand is %s\n", records[i].Text());
            lost[i] = !transaction.Store(records[i]);
        } else if (i > ports.first) {
            InsertYC(hour, port);
        }
        if (m_sendflag == 1) Send_A1_16(port);
    }
    if (!opened || transaction.Commit(m_historyWait)) return;
    for (int i = ports.first; i <= ports.last; ++i)
        if (!lost[i]) StoreRecord(database, records[i]);
}

void CRuntimeData::Send_A1_16(std::uint32_t port) {
    RecordBody body{};
    std::uint32_t length = 0;
    BuildA1_16Record(body, length, port);
    CDiagLine(__func__).Dump("msgcode: 34520 data:", body.data(), length);
    PostMsg(kCodeA1_16, body.data(), length);
}
