#include "tools/zorctl/settings/StationFiles.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "System/Sqlite.h"
#include "app/ConfigDatabase.h"

namespace {

// The process reads the columns by their position; the names are for people.
constexpr char kCreateYx[] =
    "(id INTEGER, name TEXT, level INTEGER, point INTEGER, flag TEXT, address INTEGER, source INTEGER)";
constexpr char kCreateYc[] =
    "(id INTEGER, name TEXT, point INTEGER, groupcode INTEGER, groupbase INTEGER, scale REAL, offset REAL, "
    "low REAL, high REAL)";

// A database file in the making, which nobody sees before it is whole: in a folder of its own beside the real
// one, where nobody else can have put anything, and in one transaction. Remembers the first failure; every
// later step then does nothing.
class CDatabaseDraft {
  public:
    // `key` of `keyLength` bytes, or null for a database without one.
    explicit CDatabaseDraft(const std::string& path, const char* key = nullptr, int keyLength = 0)
        : m_path(path), m_folder(path + ".XXXXXX") {
        if (mkdtemp(m_folder.data()) == nullptr) {
            m_folder.clear();
            Fail(std::strerror(errno));
            return;
        }
        if (m_database.Open(Draft().c_str(), kBusyAtStartUpMs) != SQLITE_OK) Fail("cannot be written");
        if (key != nullptr && m_trouble.empty()) m_database.Key(key, keyLength);
        Run("BEGIN");
    }
    ~CDatabaseDraft() {
        m_database.Close();
        if (m_folder.empty()) return;
        std::remove(Draft().c_str());
        std::remove(m_folder.c_str());
    }
    CDatabaseDraft(const CDatabaseDraft&) = delete;
    CDatabaseDraft& operator=(const CDatabaseDraft&) = delete;

    void Run(const std::string& sql) {
        if (!m_trouble.empty()) return;
        const CSqliteTable done(m_database, sql.c_str());
        if (!done.Ok()) Fail(done.Error());
    }

    // SQLite makes numbers of the texts where the column holds numbers.
    void Insert(const char* table, const PointRow& row) {
        std::string values;
        for (const std::string& cell : row) {
            const std::unique_ptr<char, void (*)(void*)> quoted(sqlite3_mprintf("%Q", cell.c_str()),
                                                                sqlite3_free);
            if (quoted == nullptr) return Fail("out of memory");
            values += (values.empty() ? "" : ",") + std::string(quoted.get());
        }
        Run(std::string("INSERT INTO ") + table + " VALUES(" + values + ')');
    }

    // Gives the file its real name, replacing one that bears it, also a link, which is not followed. Returns
    // what has gone wrong since the beginning.
    std::string PutInPlace() {
        Run("COMMIT");
        m_database.Close();
        if (!m_trouble.empty()) return m_trouble;
        // A journal of the old file would be played back into the new one.
        for (const char* beside : {"-journal", "-wal", "-shm"}) std::remove((m_path + beside).c_str());
        if (std::rename(Draft().c_str(), m_path.c_str()) != 0) Fail(std::strerror(errno));
        return m_trouble;
    }

  private:
    void Fail(const char* what) {
        if (m_trouble.empty()) m_trouble = m_path + ": " + what;
    }
    std::string Draft() const { return m_folder + "/draft"; }

    std::string m_path;
    std::string m_folder;  // empty where it could not be made
    CSqliteDb m_database;
    std::string m_trouble;
};

}  // namespace

std::string WriteConfiguration(const std::string& path, int ports) {
    CDatabaseDraft draft(path, kConfigKey, kConfigKeyLength);
    draft.Run("CREATE TABLE tagSystem(name TEXT, value TEXT)");
    draft.Insert("tagSystem", {kPortCountEntry, std::to_string(ports)});
    return draft.PutInPlace();
}

std::string WritePointSettings(const std::string& path, const std::vector<PointRow>& yx,
                               const std::vector<PointRow>& yc) {
    CDatabaseDraft draft(path);
    for (const char* kind : {"DC", "AC"}) {
        draft.Run(std::string("CREATE TABLE tagPS_YX_") + kind + kCreateYx);
        draft.Run(std::string("CREATE TABLE tagPS_YC_") + kind + kCreateYc);
    }
    for (const PointRow& row : yx) draft.Insert("tagPS_YX_DC", row);
    for (const PointRow& row : yc) draft.Insert("tagPS_YC_DC", row);
    return draft.PutInPlace();
}
