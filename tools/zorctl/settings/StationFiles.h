// The databases that a station has before zor_runtime starts.
#pragma once

#include <string>
#include <vector>

#include "tools/zorctl/settings/PointTable.h"

// Both write a whole new file at `path`, replacing one that is there, and return an empty text, or what went
// wrong; the old file then stays. `ports` 1 to 8; the points are those of a DC charger.
std::string WriteConfiguration(const std::string& path, int ports);
std::string WritePointSettings(const std::string& path, const std::vector<PointRow>& yx,
                               const std::vector<PointRow>& yc);
