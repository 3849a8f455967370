#include "history/HistoryDatabase.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "System/FixedText.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "history/HistoryIndexes.h"

namespace {

template <std::size_t kSize>
void TakeText(char (&field)[kSize], const char* text) {
    if (text != nullptr) CopyText(field, text);
}

bool HasColumn(const CSqliteTable& table, const char* name) {
    for (int column = 0; column < table.Columns(); ++column) {
        const char* candidate = table.Name(column);
        if (candidate != nullptr && std::strcmp(candidate, name) == 0) return true;
    }
    return false;
}

constexpr char kSelectAny[] = "select * from tagYC limit 1";

// Until the second try of what failed. A disturbance is over then; a file that is lost would take no further
// record, for years.
constexpr useconds_t kWhile = 1000000;

// Whether a file that could not be read still cannot be, from its opening on, after a while.
bool StaysUnreadable(const char* path) {
    usleep(kWhile);
    CSqliteDb database;
    return database.Open(path, kBusyAtStartUpMs) == SQLITE_OK &&
           CSqliteTable(database, kSelectAny).ReadFailed();
}

void AddTo(std::int32_t& counter, const char* text) {
    counter = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) +
                                        static_cast<std::uint32_t>(ParseInt32(text)));
}

}  // namespace

bool IsHistoryBroken(const char* path) {
    struct stat file {};
    if (stat(path, &file) == 0) return file.st_size == 0;
    usleep(kWhile);
    return stat(path, &file) != 0 || file.st_size == 0;
}

HistoryCells HistoryCellsOf(const CSqliteTable& table, int row) {
    HistoryCells cells{};
    for (std::size_t column = 0; column < cells.size(); ++column)
        cells[column] = table.Cell(row, static_cast<int>(column));
    return cells;
}

HistoryCells HistoryCellsOf(const SqlRow& row) {
    HistoryCells cells{};
    for (std::size_t column = 0; column < cells.size(); ++column)
        cells[column] = row.Cell(static_cast<int>(column));
    return cells;
}

void FillRecord(YcHistoryRecord& record, const HistoryCells& cells) {
    const auto cell = [&cells](EHistoryColumn column) { return cells[column]; };
    const auto int64 = [&cell](EHistoryColumn column, std::int64_t old) {
        return cell(column) != nullptr ? ParseInt64(cell(column)) : old;
    };
    const auto int32 = [&cell](EHistoryColumn column, std::int32_t old) {
        return cell(column) != nullptr ? ParseInt32(cell(column)) : old;
    };
    record.portNo = int32(kHistoryPortNo, record.portNo);
    record.chargeCnt = int32(kHistoryChargeCnt, record.chargeCnt);
    record.chargeTime = int32(kHistoryChargeTime, record.chargeTime);
    record.k1Cnt = int32(kHistoryK1Cnt, record.k1Cnt);
    record.k2Cnt = int32(kHistoryK2Cnt, record.k2Cnt);
    record.mvalue = int64(kHistoryMValue, record.mvalue);
    record.mvalue_1 = int64(kHistoryMValue1, record.mvalue_1);
    record.mvalue_2 = int64(kHistoryMValue2, record.mvalue_2);
    record.mvalue_3 = int64(kHistoryMValue3, record.mvalue_3);
    record.mvalue_4 = int64(kHistoryMValue4, record.mvalue_4);
    record.fvalue = int64(kHistoryFValue, record.fvalue);
    record.fvalue_1 = int64(kHistoryFValue1, record.fvalue_1);
    record.fvalue_2 = int64(kHistoryFValue2, record.fvalue_2);
    record.fvalue_3 = int64(kHistoryFValue3, record.fvalue_3);
    record.fvalue_4 = int64(kHistoryFValue4, record.fvalue_4);
    TakeText(record.tradenumber, cell(kHistoryTradeNumber));
    record.tradeelec = int32(kHistoryTradeElec, record.tradeelec);
    TakeText(record.fretime, cell(kHistoryFreTime));
    TakeText(record.collecttime, cell(kHistoryTimestamp));
    record.status = ERecordStatus::Found;
}

void PrintRecord(const YcHistoryRecord& record, const char* operation) {
    const CDiagLine line(operation);
    line.Print("tradenum:%s\n", record.tradenumber);
    line.Print("tradeelec:%d\n", record.tradeelec);
    line.Print("fretime:%s\n", record.fretime);
    line.Print("collecttime:%s\n", record.collecttime);
    line.Print("chargeCnt:%d\n", record.chargeCnt);
    line.Print("chargeTime:%d\n", record.chargeTime);
    line.Print("k1Cnt:%d\n", record.k1Cnt);
    line.Print("k2Cnt:%d\n", record.k2Cnt);
}

int CRuntimeData::CheckYCDB() {
    const CAppPath path(kHistoryFile);
    CSqliteDb database;
    if (database.Open(path.c_str(), kBusyAtStartUpMs) != SQLITE_OK) return 0;
    CDiagLine(__func__).Print("You have opened zorycdata.db successfully!");
    {
        const CSqliteTable table(database, kSelectAny);
        if (!table.Ok()) CDiagLine(__func__).Print("sqlite3_get_table Fail:\n");
        if (table.ReadFailed() && StaysUnreadable(path.c_str()))
            m_failures.Report(EFailure::HistoryLost, "%s cannot be read: %s", kHistoryFile, table.Error());
        else if (table.IsPassing())
            return 0;
        if (table.Rows() > 0 && HasColumn(table, "chargeCnt")) {
            CDiagLine(__func__).Print("tagYC is new, so keep it!");
            CreateHistoryIndexes(database);
            RestoreCounters(database);
            return 0;
        }
    }
    CDiagLine(__func__).Print("tagYC is old, so remove it!");
    std::remove(path.c_str());
    return 1;
}

// A file from before there were indexes gets them here, once; that can take a while on a large one.
void CRuntimeData::CreateHistoryIndexes(CSqliteDb& database) {
    if (PrepareHistoryIndexes(database)) return;
    m_failures.Report(EFailure::HistoryIndex, "%s stays slow without its indexes: %s", kHistoryFile,
                      database.Error());
    if (database.InTransaction()) database.Exec("ROLLBACK");
}

void CRuntimeData::RestoreCounters(CSqliteDb& database) {
    const PortRange ports = PortsOf(m_portCount);
    for (int port = ports.first; port <= ports.last; ++port) RestoreCountersOf(port, database);
}

void CRuntimeData::RestoreCountersOf(int port, CSqliteDb& database) {
    // By place from the end of the row: these are chargeCnt and chargeTime, which are always 0, so that the
    // counters in effect begin anew with every start. The station's other programs count on that.
    constexpr int kFirstFromEnd = 4;
    constexpr int kSecondFromEnd = 3;
    const CDiagLine line("CheckYCDB");
    CSqlText<128> sql;
    sql.Format("select * from tagYC where portNo='%d' order by id desc limit 1", port);
    const CSqliteTable table(database, sql);
    if (!table.Ok()) {
        line.Print("tagYC get port: %d data error:%s", port, table.Error());
    } else if (table.Rows() == 0) {
        line.Print(m_portCount == 1 ? "tagYC get port:%d no data!" : "tagYC get port: %d no data!\n", port);
    } else {
        std::int32_t& first = k1Cnt[static_cast<std::size_t>(port)];
        std::int32_t& second = k2Cnt[static_cast<std::size_t>(port)];
        AddTo(first, table.Cell(0, table.Columns() - kFirstFromEnd));
        AddTo(second, table.Cell(0, table.Columns() - kSecondFromEnd));
        line.Print("port:%d get k1Cnt:%d k2Cnt:%d from tagYC!\n", port, first, second);
    }
}

int CRuntimeData::InitYcHistoryDatabase() {
    CSqliteDb database;
    database.OpenOrExit(CAppPath(kHistoryFile).c_str());
    CDiagLine(__func__).Print("You have opened zorycdata.db successfully!");
    if (database.Exec(kCreateYc) != SQLITE_OK)
        std::fprintf(stderr, "zorycdata.db create table tagYC error!: %s\n", database.Error());
    else
        CreateHistoryIndexes(database);
    return 0;
}
