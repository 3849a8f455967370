#include "tools/zorctl/live/PointNames.h"

#include <algorithm>
#include <list>
#include <map>
#include <tuple>
#include <utility>

#include "System/AppFiles.h"
#include "System/Sqlite.h"
#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/settings/StationReading.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

std::string Described(const NamedPoint& point) {
    return '"' + point.name + "\" (" + TableName(point.table) + ' ' + std::to_string(point.index) + ')';
}

std::string Listed(const std::vector<NamedPoint>& points) {
    std::string list;
    for (const NamedPoint& point : points) list += (list.empty() ? "" : ", ") + Described(point);
    return list;
}

}  // namespace

std::string CPointNames::Load(const std::string& directory) {
    m_points.clear();
    if (std::string trouble = ReadPortCount(directory, m_portCount); !trouble.empty()) return trouble;
    CSqliteDb database;
    if (std::string trouble = OpenToRead(database, directory, kPointSettingFile); !trouble.empty())
        return trouble;
    std::string trouble = LoadYx(database);
    if (trouble.empty()) trouble = LoadYc(database);
    std::stable_sort(m_points.begin(), m_points.end(), [](const NamedPoint& a, const NamedPoint& b) {
        return std::tie(a.table, a.index) < std::tie(b.table, b.index);
    });
    return trouble.empty() ? "" : PathOf(directory, kPointSettingFile) + ": " + trouble;
}

std::string CPointNames::LoadYx(CSqliteDb& database) {
    const CSqliteTable table(database, kSelectYxDc);
    if (!table.Ok()) return WhyNot(table);
    for (int row = 0; row < table.Rows(); ++row) {
        std::list<YxPointRecord> records;  // the row's own, then its copies
        AppendYxPoint(records, ParseYxRow(table, row), m_portCount);
        for (const YxPointRecord& record : records)
            Add({record.source == kSourceYx2 ? ELiveTable::Yx2 : ELiveTable::Yx, records.front().pointNumber,
                 std::max(record.port, 1), record.pointNumber, record.name});
    }
    return "";
}

// Telemetry records bear no port, and the rows of a port can stand beside the copies made for it: a report
// finds a port's value by its number alone. So points of one name that lie whole ports apart are one point.
std::string CPointNames::LoadYc(CSqliteDb& database) {
    const CSqliteTable table(database, kSelectYcDc);
    if (!table.Ok()) return WhyNot(table);
    std::list<YcGroup> groups;
    for (int row = 0; row < table.Rows(); ++row) AppendYcPoint(groups, ParseYcRow(table, row), m_portCount);
    std::map<std::pair<std::string, int>, std::vector<int>> numbers;
    for (const YcGroup& group : groups)
        for (const YcPointRecord& record : group.points)
            numbers[{record.name, record.pointNumber % kPointsPerPort}].push_back(record.pointNumber);
    for (auto& [key, places] : numbers) {
        std::sort(places.begin(), places.end());
        for (int port = 1; port <= m_portCount; ++port) {
            // A settings row may hold any number.
            const std::int64_t place = std::int64_t{places[0]} + PortBase(port);
            if (std::binary_search(places.begin(), places.end(), place))
                Add({ELiveTable::Yc, places[0], port, static_cast<int>(place), key.first});
        }
    }
    return "";
}

// The same row twice names one point.
void CPointNames::Add(const NamedPoint& point) {
    const bool known = std::any_of(m_points.begin(), m_points.end(), [&point](const NamedPoint& other) {
        return other.table == point.table && other.index == point.index && other.port == point.port &&
               other.name == point.name;
    });
    if (!known && !point.name.empty()) m_points.push_back(point);
}

std::vector<NamedPoint> CPointNames::FirstsOf(const std::string& name) const {
    std::vector<NamedPoint> exact;
    std::vector<NamedPoint> anyCase;
    for (const NamedPoint& point : m_points) {
        if (point.index != point.first) continue;
        if (point.name == name) exact.push_back(point);
        if (LowerCase(point.name) == LowerCase(name)) anyCase.push_back(point);
    }
    return exact.empty() ? anyCase : exact;
}

std::string CPointNames::Find(const std::string& name, int port, NamedPoint& found) const {
    if (port > m_portCount)
        return "port " + std::to_string(port) + ": the station has " + std::to_string(m_portCount);
    const std::vector<NamedPoint> firsts = FirstsOf(name);
    if (firsts.empty()) return "no point is named \"" + name + '"';
    if (firsts.size() > 1)
        return "several points bear the name: " + Listed(firsts) + "; give table and index";
    const NamedPoint& first = firsts.front();
    const auto place =
        std::find_if(m_points.begin(), m_points.end(), [&first, port](const NamedPoint& point) {
            return point.table == first.table && point.first == first.first && point.name == first.name &&
                   point.port == std::max(port, 1);
        });
    if (place == m_points.end()) return Described(first) + " has no copy for port " + std::to_string(port);
    found = *place;
    return "";
}

std::string FindPoint(const std::string& directory, const std::string& name, int port, NamedPoint& found) {
    CPointNames names;
    const std::string trouble = names.Load(directory);
    return trouble.empty() ? names.Find(name, port, found) : trouble;
}

std::string NoPlace(std::int32_t source, std::int32_t point) {
    if (source != kSourceYx && source != kSourceYx2)
        return "source " + std::to_string(source) + " is no live table";
    if (point >= 0 && point < LiveEntries()) return "";
    return std::to_string(point) + " lies outside the live table (0 to " + std::to_string(LiveEntries() - 1) +
           ')';
}
