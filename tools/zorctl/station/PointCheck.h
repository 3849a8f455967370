// What the process makes of point settings that are not as anybody wants them.
#pragma once

#include <string>
#include <vector>

class CSqliteTable;

struct PointFindings {
    std::vector<std::string> harm;      // events or values are missing
    std::vector<std::string> oddities;  // nothing is, but perhaps not all is as it was meant
};

// Of both tables of a station with `portCount` ports.
PointFindings CheckPoints(const CSqliteTable& yx, const CSqliteTable& yc, int portCount);
