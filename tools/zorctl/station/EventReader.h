// New rows of the event database of a station that runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct EventRow {
    std::string text;
    int value;
    int point;
    int table;  // 0 the first live table, 1 the second
};

// Reads without waiting and holds the file locked only while it steps through the new rows: a writer that
// meets it there waits for far less than its busy timeout, so no event is lost.
class CEventReader {
  public:
    explicit CEventReader(const std::string& path) : m_path(path) {}

    // The rows since the last call; the first call finds out where the table ends. Empty where the file is
    // missing, locked or cannot be read now: what is there comes with the next call.
    std::vector<EventRow> Take();

  private:
    std::string m_path;
    std::int64_t m_last = -1;  // id of the newest row that was taken, negative before the first call
};
