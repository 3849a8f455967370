#include "tools/zorctl/settings/StationFiles.h"

#include "app/ConfigDatabase.h"
#include "tools/zorctl/settings/DatabaseDraft.h"

namespace {

// The process reads the columns by their position; the names are for people.
constexpr char kCreateYx[] =
    "(id INTEGER, name TEXT, level INTEGER, point INTEGER, flag TEXT, address INTEGER, source INTEGER)";
constexpr char kCreateYc[] =
    "(id INTEGER, name TEXT, point INTEGER, groupcode INTEGER, groupbase INTEGER, scale REAL, offset REAL, "
    "low REAL, high REAL)";

void CreateTables(CDatabaseDraft& draft) {
    for (const char* kind : {"DC", "AC"}) {
        draft.Run((std::string("CREATE TABLE tagPS_YX_") + kind + kCreateYx).c_str());
        draft.Run((std::string("CREATE TABLE tagPS_YC_") + kind + kCreateYc).c_str());
    }
}

void Fill(CDatabaseDraft& draft, const char* insert, const std::vector<PointRow>& points) {
    CRowWriter rows(draft, insert);
    for (const PointRow& point : points) {
        for (const std::string& cell : point) rows.Text(cell.c_str());
        rows.End();
    }
}

std::string Finish(CDatabaseDraft& draft) {
    return draft.PutInPlace() ? std::string() : draft.Trouble();
}

}  // namespace

std::string WriteConfiguration(const std::string& path, int ports) {
    CDatabaseDraft draft(path, kConfigKey, kConfigKeyLength);
    draft.Run("CREATE TABLE tagSystem(name TEXT, value TEXT)");
    CRowWriter(draft, "INSERT INTO tagSystem VALUES(?,?)")
        .Text(kPortCountEntry)
        .Text(std::to_string(ports).c_str())
        .End();
    return Finish(draft);
}

std::string WritePointSettings(const std::string& path, const std::vector<PointRow>& yx,
                               const std::vector<PointRow>& yc) {
    CDatabaseDraft draft(path);
    CreateTables(draft);
    Fill(draft, "INSERT INTO tagPS_YX_DC VALUES(?,?,?,?,?,?,?)", yx);
    Fill(draft, "INSERT INTO tagPS_YC_DC VALUES(?,?,?,?,?,?,?,?,?)", yc);
    return Finish(draft);
}
