#include "bench/HistoryStation.h"

#include <filesystem>
#include <string>

#include "System/AppFiles.h"
#include "history/HistoryDatabase.h"
#include "history/HistoryIndexes.h"

namespace {

namespace fs = std::filesystem;

// `head` are port, send count and time, `with` and `from` where they come from.
std::string InsertRecords(const std::string& head, const std::string& with = "",
                          const std::string& from = "") {
    return "INSERT INTO tagYC(portNo,sendcount,timestamp,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,"
           "fvalue_1,fvalue_2,fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,chargeCnt,chargeTime,dcK1Cnt,"
           "dcK2Cnt) " +
           with + " SELECT " + head +
           ",'123456789','1','2','3','4','5','6','7','8','9','00112233445566778899aabbccddeeff','77',"
           "'20230830101112','0','0','11','12' " +
           from;
}

// Both histories of `days` days, the plain one without indexes.
void MakeHistories(int days, const fs::path& indexed, const fs::path& plain) {
    const std::string hours = std::to_string(days * 24 - 1);
    const std::string midnight = std::to_string((days - 1) * 24);
    fs::create_directories(indexed.parent_path());
    RunSql(plain, kCreateYc);
    RunSql(plain, InsertRecords("n, i=" + midnight + ", datetime('2024-01-01','-" + std::to_string(days) +
                                    " days','+'||i||' hours','+3 seconds')",
                                "WITH RECURSIVE h(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM h WHERE i<" +
                                    hours + "), p(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM p WHERE n<" +
                                    std::to_string(kBenchPorts) + ")",
                                "FROM h CROSS JOIN p"));
    fs::copy_file(plain, indexed);
    CSqliteDb database;
    Require(database.Open(indexed.c_str(), 0) == SQLITE_OK && PrepareHistoryIndexes(database),
            database.Error());
}

}  // namespace

HistoryStation::HistoryStation(int days, EIndexed indexed) : m_days(days) {
    const std::string base = AppFile(kHistories) + "/" + std::to_string(days);
    const std::string plain = base + "-plain";
    if (!fs::exists(base)) MakeHistories(days, base, plain);
    const std::string file = AppFile(kHistoryFile);
    fs::remove(file);
    fs::create_hard_link(indexed == EIndexed::Yes ? base : plain, file);
    Restore();
}

void HistoryStation::Restore() const {
    const auto id = [this](int hour, int port) { return std::to_string(Id(hour, port)); };
    RunSql(AppFile(kHistoryFile), "BEGIN; DELETE FROM tagYC WHERE id > " + id(23, kBenchPorts) +
                                      "; UPDATE tagYC SET sendcount=1 WHERE sendcount<>1 AND id BETWEEN " +
                                      id(0, 1) + " AND " + id(0, kBenchPorts) + "; COMMIT");
}

std::int64_t HistoryStation::Id(int hour, int port) const {
    return std::int64_t{(m_days - 1) * 24 + hour} * kBenchPorts + port;
}

void HistoryStation::RaiseBareRecords(CSqliteDb& database) const {
    CBareStatement read(database, "SELECT * FROM tagYC WHERE id=?1");
    CBareStatement raise(database, "UPDATE tagYC SET sendcount=sendcount+1 WHERE id=?1");
    for (int port = 1; port <= kBenchPorts; ++port) {
        read.Run(Id(0, port));
        raise.Run(Id(0, port));
    }
}

void StoreBareRecords(CSqliteDb& database, int firstPort, int lastPort) {
    CBareStatement insert(database, InsertRecords("?1,0,datetime('now','localtime')").c_str());
    for (int port = firstPort; port <= lastPort; ++port) insert.Run(port);
}
