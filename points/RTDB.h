// The real-time YC database: one label set per telemetry point, loaded at start-up.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "points/PointRecords.h"

// One telemetry point.
class CLabelSet {
  public:
    CLabelSet(std::int32_t pointNumber, const char* description, const std::string& directory)
        : m_pointNumber(pointNumber), m_description(description), m_directory(directory) {}
    virtual ~CLabelSet() = default;
    CLabelSet(const CLabelSet&) = delete;
    CLabelSet& operator=(const CLabelSet&) = delete;

    std::int32_t PointNumber() const { return m_pointNumber; }
    const std::string& Description() const { return m_description; }
    std::int32_t ValueCount() const { return m_valueCount; }

  private:
    std::int32_t m_pointNumber;
    std::string m_description;
    std::string m_directory;
    std::int32_t m_valueCount = 0;
    std::list<YcPointRecord> m_values;  // value records have the size of a point record
};

// The table of label sets, in the order of the settings rows. Loaded once and then left alone.
class CRTDB {
  public:
    CRTDB() = default;
    virtual ~CRTDB() = default;
    CRTDB(const CRTDB&) = delete;
    CRTDB& operator=(const CRTDB&) = delete;

    // Loads the points of a charger of the given kind; `directory` is kept with each. A failed query gives an
    // empty table; a database that cannot be opened ends the process. Returns 0.
    int Load(const std::string& directory, std::int32_t chargerKind);

    const std::list<std::unique_ptr<CLabelSet>>& LabelSets() const { return m_labelSets; }

  private:
    std::list<std::unique_ptr<CLabelSet>> m_labelSets;
};
