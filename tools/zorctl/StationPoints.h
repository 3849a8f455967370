// The points of a plausible station, as rows of the point settings.
#pragma once

#include <cstddef>

// Severity of the events of a status point; any other number is normal.
inline constexpr int kNormal = 3;
inline constexpr int kWarning = 4;
inline constexpr int kFault = 5;
inline constexpr int kEmergency = 6;

struct YxPoint {
    int point;
    int level;
    int source;  // 0 the first live table, 1 the second
    const char* name;
};

struct YcPoint {
    int point;
    double scale;
    int offset;
    const char* name;
};

template <typename Point>
struct PointList {
    const Point* first;
    std::size_t count;

    const Point* begin() const { return first; }
    const Point* end() const { return first + count; }
};

// Station-wide points first, then those of port 1.
PointList<YxPoint> YxPoints();
PointList<YcPoint> YcPoints();
