#include "tools/zorctl/StationFiles.h"

#include "app/ConfigDatabase.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/DatabaseDraft.h"
#include "tools/zorctl/StationPoints.h"

namespace {

// The process reads the columns by their position; the names are for people.
constexpr char kCreateYx[] =
    "(id INTEGER, name TEXT, level INTEGER, point INTEGER, flag TEXT, address INTEGER, source INTEGER)";
constexpr char kCreateYc[] =
    "(id INTEGER, name TEXT, point INTEGER, groupcode INTEGER, groupbase INTEGER, scale REAL, offset REAL, "
    "low REAL, high REAL)";

constexpr int kFirstCopiedYcPoint = 100;  // YC points below it are never copied for further ports

void CreateTables(CDatabaseDraft& draft) {
    for (const char* kind : {"DC", "AC"}) {
        draft.Run((std::string("CREATE TABLE tagPS_YX_") + kind + kCreateYx).c_str());
        draft.Run((std::string("CREATE TABLE tagPS_YC_") + kind + kCreateYc).c_str());
    }
}

// One row per point of port 1: the process makes the rows of further ports itself. Its copies step 128, then
// 256, then 384 further, so from port 3 on they land on points of later ports; and a row that names such a
// point would count as port 1's. No settings can give ports 3 and up their own status points.
void FillYx(CDatabaseDraft& draft) {
    CRowWriter rows(draft, "INSERT INTO tagPS_YX_DC VALUES(?,?,?,?,?,?,?)");
    int id = 0;
    for (const YxPoint& point : kYxPoints) {
        // 0 is no information address, so they count from 1; the second table's stand above all of the first.
        const int address = point.point + 1 + 0x400 * point.source;
        rows.Whole(++id).Text(point.name).Whole(point.level).Whole(point.point);
        rows.Text("true").Whole(address).Whole(point.source).End();
    }
}

// All points share one group, because a report takes its values from one group only. The first row opens the
// group and gets no copies; it is a station-wide point, which needs none. Ports 3 and up get rows of their
// own, since the copies miss them as they do for YX, but telemetry goes by its point number alone.
void FillYc(CDatabaseDraft& draft, int ports) {
    constexpr int kGroupBase = 100;
    CRowWriter rows(draft, "INSERT INTO tagPS_YC_DC VALUES(?,?,?,0,?,?,?,0,0)");
    const auto add = [&rows](const YcPoint& point, int number) {
        rows.Whole(number).Text(point.name).Whole(number).Whole(kGroupBase);
        rows.Real(point.scale).Real(point.offset).End();
    };
    for (const YcPoint& point : kYcPoints) add(point, point.point);
    for (int port = 3; port <= ports; ++port)
        for (const YcPoint& point : kYcPoints)
            if (point.point >= kFirstCopiedYcPoint) add(point, point.point + PortBase(port));
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

std::string WritePointSettings(const std::string& path, int ports) {
    CDatabaseDraft draft(path);
    CreateTables(draft);
    FillYx(draft);
    FillYc(draft, ports);
    return Finish(draft);
}
