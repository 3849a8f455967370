// Points by the names that the settings give them, each port's at the place that the process gives it.
#pragma once

#include <string>
#include <vector>

#include "tools/zorctl/live/BenchShm.h"

class CSqliteDb;

struct NamedPoint {
    ELiveTable table;
    int first;  // point number of the settings, or of the first port
    int port;   // from 1; 1 also for what belongs to the whole station
    int index;  // in the live table
    std::string name;
};

class CPointNames {
  public:
    // Reads the settings and the port count in `directory`. Returns an empty text, or what went wrong.
    std::string Load(const std::string& directory);

    // The point of `port` (0: the first) whose name is `name`, in this spelling or, where none is, in any
    // case of letters. Returns an empty text, or why it is not to be had.
    std::string Find(const std::string& name, int port, NamedPoint& found) const;

    // All of them, by table and index.
    const std::vector<NamedPoint>& Points() const { return m_points; }
    int PortCount() const { return m_portCount; }

  private:
    std::string LoadYx(CSqliteDb& database);
    std::string LoadYc(CSqliteDb& database);
    void Add(const NamedPoint& point);
    std::vector<NamedPoint> FirstsOf(const std::string& name) const;

    int m_portCount = 1;
    std::vector<NamedPoint> m_points;
};

// Load and Find at once, for a single point.
std::string FindPoint(const std::string& directory, const std::string& name, int port, NamedPoint& found);

// Why the live table that a `source` of the settings names has no entry `point`; empty where it has one. The
// detection of changes ends at such a point.
std::string NoPlace(std::int32_t source, std::int32_t point);
