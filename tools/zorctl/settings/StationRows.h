// The points of a plausible station as rows of the point settings.
#pragma once

#include <vector>

#include "tools/zorctl/settings/PointTable.h"

// Status points. One row per point of port 1: the process makes the rows of further ports itself. Its copies
// step 128, then 256, then 384 further, so from port 3 on they land on points of later ports; and a row that
// names such a point would count as port 1's. No settings can give ports 3 and up their own status points.
std::vector<PointRow> StationYxRows();

// Telemetry points. The first row opens the group that all share and gets no copies; it is a station-wide
// point, which needs none. Ports 3 and up get rows of their own, since the copies miss them as they do for
// YX, but telemetry goes by its point number alone.
std::vector<PointRow> StationYcRows(int ports);
