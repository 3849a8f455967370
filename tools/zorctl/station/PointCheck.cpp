#include "tools/zorctl/station/PointCheck.h"

#include <iterator>
#include <list>
#include <map>

#include "System/Sqlite.h"
#include "points/PointSettings.h"
#include "tools/zorctl/live/PointNames.h"

namespace {

// What points may share, with the names of those that do.
using CSharers = std::map<std::string, std::vector<std::string>>;

// `3: "A", "B"; 5: "C", "D" ...; and 7 more`: what more than one shares.
std::string Listed(const CSharers& sharers) {
    constexpr std::size_t kMost = 3;
    std::string list;
    std::size_t found = 0;
    for (const auto& [what, names] : sharers) {
        if (names.size() < 2 || ++found > kMost) continue;
        list += (found > 1 ? "; " : "") + what + ": \"" + names[0] + "\", \"" + names[1] +
                (names.size() > 2 ? "\" ..." : "\"");
    }
    return found > kMost ? list + "; and " + std::to_string(found - kMost) + " more" : list;
}

void CheckDetection(const std::list<YxPointRecord>& points, PointFindings& findings) {
    CSharers places;
    for (auto point = points.begin(); point != points.end(); ++point) {
        const std::string why = NoPlace(point->source, point->pointNumber);
        if (!why.empty()) {
            const auto behind = std::distance(point, points.end()) - 1;
            findings.harm.push_back(std::string("no events of \"") + point->name + "\" and the " +
                                    std::to_string(behind) + " points and copies behind it: " + why);
            break;
        }
        const ELiveTable table = point->source == kSourceYx2 ? ELiveTable::Yx2 : ELiveTable::Yx;
        places[EntryName(table, point->pointNumber)].emplace_back(point->name);
    }
    if (const std::string list = Listed(places); !list.empty())
        findings.oddities.push_back("events recorded more than once: " + list);
}

void CheckIds(const std::string& kind, const CSharers& ids, PointFindings& findings) {
    if (ids.empty()) findings.harm.push_back("the settings have no " + kind + " points");
    if (const std::string list = Listed(ids); !list.empty())
        findings.oddities.push_back(kind + " points of one id: " + list);
}

}  // namespace

PointFindings CheckPoints(const CSqliteTable& yx, const CSqliteTable& yc, int portCount) {
    PointFindings findings;
    CSharers ids;
    std::list<YxPointRecord> points;  // as the process walks them
    for (int row = 0; row < yx.Rows(); ++row) {
        const YxPointRecord record = ParseYxRow(yx, row);
        ids[std::to_string(record.id)].emplace_back(record.name);
        AppendYxPoint(points, record, portCount);
    }
    CheckDetection(points, findings);
    CheckIds("status", ids, findings);
    ids.clear();
    for (int row = 0; row < yc.Rows(); ++row) {
        const YcPointRecord record = ParseYcRow(yc, row);
        ids[std::to_string(record.id)].emplace_back(record.name);
    }
    CheckIds("telemetry", ids, findings);
    return findings;
}
