// The live view's picture of a station, brought up to date look by look.
#pragma once

#include <ctime>
#include <deque>
#include <optional>
#include <string>

#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/station/EventReader.h"
#include "tools/zorctl/station/QueueState.h"
#include "tools/zorctl/watch/LiveLook.h"
#include "tools/zorctl/watch/StationPicture.h"

// What came last, of a list that grows at its end.
class CRecent {
  public:
    static constexpr std::size_t kMost = 100;  // more than a terminal shows

    // `since` is when it came to be; no value for what has been there before the first look.
    void Add(const std::string& line, std::optional<CMoment> since);
    std::vector<Shown> LinesAt(CMoment now) const;

  private:
    struct Line {
        std::string text;
        std::optional<CMoment> since;
    };
    std::deque<Line> m_lines;
};

class CStationView {
  public:
    // Of the station with its databases in `directory`. `takes`: messages are taken from the queue, as
    // zor_main does, otherwise they are copied. Creates and removes nothing else.
    CStationView(const std::string& directory, bool takes, CStopSignals& stop);

    // Looks at everything. `now` for ages, `clock` for the time of day.
    void Look(CMoment now, const std::timespec& clock);
    // Fetches messages that have come, which the next look shows. Between the looks, as often as can be: who
    // copies sees only what zor_main has not taken yet.
    void FetchMessages(CMoment now, const std::timespec& clock);

    // As of the last look.
    const StationPicture& Picture() const { return m_picture; }

  private:
    void LookForProcess(CMoment now);
    void LookAtEvents(CMoment now);
    void LookAtMessages(CMoment now, const std::timespec& clock);
    std::string FollowQueue(const QueueState& queue);

    // When something new came: unknown for all that the first look finds.
    std::optional<CMoment> Since(CMoment now) const {
        return m_hasLooked ? std::optional<CMoment>(now) : std::nullopt;
    }

    bool m_takes;
    CStopSignals& m_stop;
    bool m_hasLooked = false;
    StationPicture m_picture;
    CLiveLook m_live;
    std::optional<CMoment> m_processLook;
    CEventReader m_eventReader;
    CRecent m_events;
    CRecent m_messages;
    std::optional<CMainChannel> m_channel;  // while the queue is there
};
