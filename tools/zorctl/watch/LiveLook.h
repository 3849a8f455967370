// Ports and points of a station for the live view: settings from the databases, values from shared memory.
#pragma once

#include <chrono>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "points/PointRecords.h"
#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/watch/StationPicture.h"

// The clock by which the view counts the age of what it shows.
using CMoment = std::chrono::steady_clock::time_point;

// How old what happened at `then` is at `now`, in seconds.
inline double AgeAt(CMoment now, CMoment then) {
    return std::chrono::duration<double>(now - then).count();
}

// Remembers texts, and since when they are what they are.
class CChanges {
  public:
    // What `key` shows at `now`. What is seen for the first time has not changed.
    Shown Note(const std::string& key, const std::string& text, CMoment now);

  private:
    struct Entry {
        std::string text;
        std::optional<CMoment> changed;
    };
    std::map<std::string, Entry> m_entries;
};

class CLiveLook {
  public:
    explicit CLiveLook(const std::string& directory) : m_directory(directory) {}

    // Fills ports, points and their notes. Settings that have changed are read again; a segment that is not
    // there is looked for each time and never made.
    void Look(StationPicture& picture, CMoment now);

  private:
    void FollowSettings(CMoment now);
    std::string LoadTelemetry();
    std::string FollowSegment();
    PortPicture LookAtPort(int port, CMoment now);
    PointPicture LookAtPoint(const NamedPoint& point, CMoment now);
    void RefreshTelemetry();
    bool HasPoint(int number) const;

    std::string m_directory;
    std::string m_settingsStamp;    // of the files when they were read
    std::string m_settingsTrouble;  // why they could not be read
    CMoment m_settingsLook;         // when that was tried
    CPointNames m_names;
    std::set<std::pair<ELiveTable, int>>
        m_perPort;                         // first numbers of the points that further ports have too
    std::list<YcPointRecord> m_telemetry;  // of all groups, as the process keeps them
    unsigned long m_segment = 0;           // id of the segment that is attached
    std::optional<CBenchShm> m_live;
    CChanges m_changes;
};
