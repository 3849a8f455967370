// Point settings for tests.
#pragma once

#include <vector>

#include "points/PointRecords.h"

struct YxRow {
    int number;
    int address = 0;
    int source = kSourceYx;
};

struct YcRow {
    int number;
    double scale = 1;
    int offset = 0;
    int groupBase = 100;
};

// Writes the point settings of a DC charger into the application directory, rows in the given order.
void MakePointSettings(const std::vector<YxRow>& yx, const std::vector<YcRow>& yc);
