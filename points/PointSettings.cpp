#include "points/PointSettings.h"

#include <algorithm>
#include <cstring>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "System/FixedText.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "app/RuntimeData.h"

namespace {

constexpr std::int32_t kFirstCopiedYx = 99;   // this point is copied ...
constexpr std::int32_t kLastUncopiedYc = 99;  // ... and this one is not: the two lists differ by one
constexpr std::int32_t kPointsPerGroupKey = 50;

std::int32_t ParseFlag(const char* text) {
    if (text == nullptr) return kFlagUnset;
    if (std::strcmp(text, "true") == 0) return kFlagTrue;
    return std::strcmp(text, "false") == 0 ? kFlagFalse : kFlagUnset;
}

// Moves a copy on to `port`. The step grows with the port, so that copies lie 128, 384, 768 ... above the
// base point.
void StepToPort(std::int32_t& pointNumber, int port) {
    // Through unsigned: a settings row may hold any number.
    pointNumber = static_cast<std::int32_t>(static_cast<std::uint32_t>(pointNumber) +
                                            static_cast<std::uint32_t>(kPointsPerPort * (port - 1)));
}

bool Accepts(const YcGroup& group, const YcPointRecord& record) {
    if (group.code != 0) return group.code == record.groupCode;
    return group.key == record.groupBase / kPointsPerGroupKey;
}

void OpenPointSettings(CSqliteDb& database, const char* operation) {
    const CAppPath path(kPointSettingFile);
    CDiagLine(operation).Print("%s", path.c_str());
    database.OpenOrExit(path.c_str());
    CDiagLine(operation).Print("You have opened a sqlite3 database named zorpointsetting.db successfully!");
}

}  // namespace

YxPointRecord ParseYxRow(const CSqliteTable& table, int row) {
    YxPointRecord record{};
    record.id = ParseInt32(table.Cell(row, kYxId));
    CopyText(record.name, table.Cell(row, kYxName));
    record.level = ParseInt32(table.Cell(row, kYxLevel));
    record.pointNumber = ParseInt32(table.Cell(row, kYxPointNumber));
    record.flag = ParseFlag(table.Cell(row, kYxFlag));
    record.address = ParseInt32(table.Cell(row, kYxAddress));
    record.source = ParseInt32(table.Cell(row, kYxSource));
    return record;
}

YcPointRecord ParseYcRow(const CSqliteTable& table, int row) {
    YcPointRecord record{};
    record.id = ParseInt32(table.Cell(row, kYcId));
    CopyText(record.name, table.Cell(row, kYcName));
    record.pointNumber = ParseInt32(table.Cell(row, kYcPointNumber));
    record.groupCode = ParseInt32(table.Cell(row, kYcGroupCode));
    record.groupBase = ParseInt32(table.Cell(row, kYcGroupBase));
    record.scale = ParseFloat(table.Cell(row, kYcScale));
    record.offset = TruncateToUInt32(ParseFloat(table.Cell(row, kYcOffset)));
    record.realC = ParseFloat(table.Cell(row, kYcRealC));
    record.realD = ParseFloat(table.Cell(row, kYcRealD));
    return record;
}

void AppendYxPoint(std::list<YxPointRecord>& points, YxPointRecord record, int portCount) {
    record.port = portCount > 1 ? 1 : 0;
    points.push_back(record);
    const bool ofPort =
        (record.source == kSourceYx && record.pointNumber >= kFirstCopiedYx) || record.source == kSourceYx2;
    if (!ofPort) return;
    for (int port = 2; port <= portCount; ++port) {
        StepToPort(record.pointNumber, port);
        record.port = port;
        points.push_back(record);
    }
}

bool AppendYcPoint(std::list<YcGroup>& groups, const YcPointRecord& record, int portCount) {
    const auto group = std::find_if(groups.begin(), groups.end(), [&record](const YcGroup& candidate) {
        return Accepts(candidate, record);
    });
    if (group == groups.end()) {
        groups.push_back({record.groupBase / kPointsPerGroupKey, record.groupCode, 0, {record}});
        return false;
    }
    group->points.push_back(record);
    if (record.pointNumber <= kLastUncopiedYc) return true;
    YcPointRecord copy = record;
    for (int port = 2; port <= portCount; ++port) {
        StepToPort(copy.pointNumber, port);
        group->points.push_back(copy);
    }
    return true;
}

int CRuntimeData::InitPointSettingYX() {
    CSqliteDb database;
    OpenPointSettings(database, __func__);
    const CSqliteTable table(database, m_chargerKind == kAcCharger ? kSelectYxAc : kSelectYxDc);
    if (!table.Ok()) CDiagLine(__func__).Print("sqlite3_get_table Fail:\n");
    for (int row = 0; row < table.Rows(); ++row)
        AppendYxPoint(m_yxPoints, ParseYxRow(table, row), m_portCount);
    m_walk.Reserve(m_yxPoints.size());  // every point can change in one tick
    SelectReportedPoints();
    return 0;
}

int CRuntimeData::InitPointSettingYC() {
    CSqliteDb database;
    OpenPointSettings(database, __func__);
    const CSqliteTable table(database, m_chargerKind == kAcCharger ? kSelectYcAc : kSelectYcDc);
    if (!table.Ok()) CDiagLine(__func__).Print("sqlite3_get_table Fail:\n");
    for (int row = 0; row < table.Rows(); ++row)
        if (!AppendYcPoint(m_ycGroups, ParseYcRow(table, row), m_portCount))
            CDiagLine(__func__).Print("Add new Node");
    FindReportedPoints();
    return 0;
}
