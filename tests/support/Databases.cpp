#include "tests/support/Databases.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"

namespace {

std::string MakeTable(const std::string& name, std::size_t columns, const std::vector<std::string>& rows) {
    constexpr char kNames[] = "a,b,c,d,e,f,g,h,i";
    std::string sql = "CREATE TABLE " + name + '(' + std::string(kNames, 2 * columns - 1) + ");";
    for (const std::string& row : rows) sql += "INSERT INTO " + name + " VALUES (" + row + ");";
    return sql;
}

}  // namespace

std::string AppFile(const char* file) {
    return CAppPath(file).c_str();
}

void RunSql(const std::string& path, const std::string& sql, const char* key) {
    CSqliteDb database;
    EXPECT_EQ(SQLITE_OK, database.Open(path.c_str(), 0)) << path;
    if (key != nullptr) database.Key(key, static_cast<int>(std::strlen(key)));
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(database.Handle(), sql.c_str(), nullptr, nullptr, nullptr))
        << sqlite3_errmsg(database.Handle());
}

std::vector<std::string> QueryRows(const std::string& path, const std::string& sql) {
    CSqliteDb database;
    EXPECT_EQ(SQLITE_OK, database.Open(path.c_str(), 0)) << path;
    const CSqliteTable table(database, sql.c_str());
    EXPECT_TRUE(table.Ok()) << table.Error();
    std::vector<std::string> rows;
    for (int row = 0; row < table.Rows(); ++row) {
        std::string joined;
        for (int column = 0; column < table.Columns(); ++column) {
            const char* cell = table.Cell(row, column);
            joined += (column == 0 ? "" : "|") + std::string(cell != nullptr ? cell : "NULL");
        }
        rows.push_back(joined);
    }
    return rows;
}

int QueryNumber(const std::string& path, const std::string& sql) {
    const std::vector<std::string> rows = QueryRows(path, sql);
    return rows.empty() ? -1 : std::atoi(rows.front().c_str());
}

void MakeConfig(int ports) {
    RunSql(AppFile(kConfigFile),
           "CREATE TABLE tagSystem (name TEXT, value TEXT);"
           "INSERT INTO tagSystem VALUES ('station','bench'),('chargport_number','" +
               std::to_string(ports) + "')",
           kConfigKey);
}

void MakePoints(const PointRows& rows, const std::string& kind) {
    constexpr std::size_t kYxColumns = 7;
    RunSql(AppFile(kPointSettingFile), "BEGIN;" + MakeTable("tagPS_YX_" + kind, kYxColumns, rows.yx) +
                                           MakeTable("tagPS_YC_" + kind, rows.ycColumns, rows.yc) + "COMMIT");
}

std::vector<std::string> YxRows(int count, int first) {
    std::vector<std::string> rows;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(first + i);
        rows.push_back(number + ",'Point " + number + "',5," + number + ",'true',0,0");
    }
    return rows;
}

CForeignLock::CForeignLock(const std::string& path, const char* statements) {
    EXPECT_EQ(SQLITE_OK, m_database.Open(path.c_str(), 0));
    EXPECT_EQ(SQLITE_OK, m_database.Exec(statements)) << m_database.Error();
}

void WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}
