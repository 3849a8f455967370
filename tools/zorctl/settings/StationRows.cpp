#include "tools/zorctl/settings/StationRows.h"

#include <string>

#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/settings/StationPoints.h"

namespace {

constexpr int kFirstCopiedYcPoint = 100;  // YC points below it are never copied for further ports

PointRow YcRow(const YcPoint& point, int number) {
    const PointTable table = YcTable();
    PointRow row(table.width);
    row[kYcName] = point.name;
    row[kYcPointNumber] = std::to_string(number);
    row[kYcOffset] = std::to_string(point.offset);
    ToStored(table.columns[kYcScale], std::to_string(point.scale), row[kYcScale]);
    return row;
}

void FillAll(const PointTable& table, std::vector<PointRow>& rows) {
    int number = 0;
    for (PointRow& row : rows) FillDefaults(table, row, ++number);
}

}  // namespace

std::vector<PointRow> StationYxRows() {
    std::vector<PointRow> rows;
    for (const YxPoint& point : kYxPoints) {
        PointRow& row = rows.emplace_back(YxTable().width);
        row[kYxName] = point.name;
        row[kYxLevel] = std::to_string(point.level);
        row[kYxPointNumber] = std::to_string(point.point);
        row[kYxSource] = std::to_string(point.source);
    }
    FillAll(YxTable(), rows);
    return rows;
}

std::vector<PointRow> StationYcRows(int ports) {
    std::vector<PointRow> rows;
    for (const YcPoint& point : kYcPoints) rows.push_back(YcRow(point, point.point));
    for (int port = 3; port <= ports; ++port)
        for (const YcPoint& point : kYcPoints)
            if (point.point >= kFirstCopiedYcPoint)
                rows.push_back(YcRow(point, point.point + PortBase(port)));
    FillAll(YcTable(), rows);
    return rows;
}
