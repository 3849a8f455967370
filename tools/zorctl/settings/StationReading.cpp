#include "tools/zorctl/settings/StationReading.h"

#include <cinttypes>
#include <cstdint>
#include <filesystem>
#include <limits>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "System/StringToolkit.h"
#include "app/ConfigDatabase.h"

std::string WhyNot(const CSqliteTable& failed) {
    // A reader may not undo what a dead writer has left half done.
    if (failed.Result() == SQLITE_READONLY)
        return "a write was broken off; readable again once zor_runtime has opened the file";
    return failed.Error();
}

std::string TextOf(const CSqliteTable& table, int row, int column) {
    const char* cell = table.Cell(row, column);
    return cell != nullptr ? cell : "";
}

std::string PathOf(const std::string& directory, const char* file) {
    return (std::filesystem::path(directory) / file).string();
}

bool Exists(const std::string& directory, const char* file) {
    std::error_code error;
    return std::filesystem::exists(PathOf(directory, file), error);
}

std::string OpenToRead(CSqliteDb& database, const std::string& directory, const char* file,
                       int busyTimeoutMs) {
    const std::string path = PathOf(directory, file);
    std::error_code error;
    if (!std::filesystem::exists(path, error)) return path + ": " + (error ? error.message() : "not there");
    const bool opened = database.OpenForReading(path.c_str(), busyTimeoutMs) == SQLITE_OK;
    return opened ? "" : path + ": cannot be opened";
}

std::string ReadPortCount(const std::string& directory, int& ports) {
    CSqliteDb database;
    if (std::string trouble = OpenToRead(database, directory, kConfigFile); !trouble.empty()) return trouble;
    database.Key(kConfigKey, kConfigKeyLength);
    const CSqliteTable table(database, kSelectSystem);
    if (!table.Ok()) return PathOf(directory, kConfigFile) + ": " + WhyNot(table);
    CStringList entries;
    CollectEntries(table, entries);
    ports = PortCountIn(entries);
    return "";
}

std::string ReadNewestFirst(CSqliteDb& database, const char* table,
                            const std::function<bool(const CSqliteTable& page, int row)>& take,
                            int pageRows) {
    std::int64_t before = std::numeric_limits<std::int64_t>::max();
    for (;;) {
        CSqlText<128> sql;
        sql.Format("select * from %s where id < %" PRId64 " order by id desc limit %d", table, before,
                   pageRows);
        const CSqliteTable page(database, sql);
        if (!page.Ok()) return WhyNot(page);
        for (int row = 0; row < page.Rows(); ++row)
            if (!take(page, row)) return "";
        const std::int64_t last = ParseInt64(page.Cell(page.Rows() - 1, 0));
        // An id that is no number leads nowhere.
        if (page.Rows() < pageRows || last >= before) return "";
        before = last;
    }
}
