// The tables of the point-settings database. Another process writes them: columns are known by position only.
#pragma once

#include <cstdint>
#include <list>

#include "points/PointRecords.h"

class CSqliteTable;

inline constexpr char kSelectYxDc[] = "SELECT * FROM tagPS_YX_DC";
inline constexpr char kSelectYxAc[] = "SELECT * FROM tagPS_YX_AC";
inline constexpr char kSelectYcDc[] = "SELECT * FROM tagPS_YC_DC";
inline constexpr char kSelectYcAc[] = "SELECT * FROM tagPS_YC_AC";

enum EYxColumn { kYxId, kYxName, kYxLevel, kYxPointNumber, kYxFlag, kYxAddress, kYxSource };
enum EYcColumn {
    kYcId,
    kYcName,
    kYcPointNumber,
    kYcGroupCode,
    kYcGroupBase,
    kYcScale,
    kYcOffset,
    kYcRealC,
    kYcRealD
};

// One row as a record; a NULL or missing column counts as 0 or as an empty text. The port is left at 0.
YxPointRecord ParseYxRow(const CSqliteTable& table, int row);
YcPointRecord ParseYcRow(const CSqliteTable& table, int row);

// Appends `record` and, on a station with several ports, the copies that the further ports get.
void AppendYxPoint(std::list<YxPointRecord>& points, YxPointRecord record, int portCount);

// Puts `record` into the group it belongs to, with the copies that the further ports get. Returns false when
// it opened a group of its own, which gets no copies.
bool AppendYcPoint(std::list<YcGroup>& groups, const YcPointRecord& record, int portCount);
