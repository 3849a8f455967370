// New rows of the event database of a station that runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct EventRow {
    std::string time;
    std::string text;
    int value;
    int point;
    int table;  // 0 the first live table, 1 the second
};

// Reads a page at a time and holds the file locked only for that long: a writer that meets it there waits for
// far less than its busy timeout, so no event is lost.
class CEventReader {
  public:
    // Of the station with its databases in `directory`. Waits `busyMs` where the file is locked.
    explicit CEventReader(const std::string& directory, std::size_t most = 0, int busyMs = 0)
        : m_directory(directory), m_mostAtFirst(most), m_busyMs(busyMs) {}

    // Appends the rows since the last call to `rows`, oldest first; the first call gives the last ones that
    // are there, `most` of them. Returns an empty text, or why the file cannot be read now: what is there
    // comes with the next call.
    std::string Take(std::vector<EventRow>& rows);

  private:
    std::string m_directory;
    std::size_t m_mostAtFirst;
    int m_busyMs;
    std::int64_t m_last = -1;  // id of the newest row that was taken, negative before the first call
};
