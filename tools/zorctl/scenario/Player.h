// Plays a scenario against a station. It never waits and never looks at a clock: whoever owns it tells it the
// time, a command line the real one, a test one of its own.
#pragma once

#include <csignal>
#include <ctime>
#include <vector>

#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/scenario/PlayLog.h"
#include "tools/zorctl/scenario/PlayWatch.h"
#include "tools/zorctl/scenario/Scenario.h"
#include "tools/zorctl/station/EventReader.h"

// One moment, on both clocks: time since the play began, never going back, and the time of day.
struct PlayMoment {
    PlayTime time;
    std::timespec wall;
};

// What a play works on; all of it outlives the player.
struct PlayGround {
    CBenchShm& live;
    CMainChannel& channel;  // open
    CStopSignals& stop;
    CEventReader& events;
    CPlayLog& log;
};

class CPlayer {
  public:
    // `speed` divides the offsets and the times of ramps. How long an expectation waits stays: the process
    // does not get faster.
    CPlayer(const Scenario& scenario, const PlayGround& ground, double speed = 1.0);

    // Takes what came since the last call, decides what can be decided, and plays all that is due at `now`.
    // False when the play is over; it then does nothing more.
    bool Advance(const PlayMoment& now);

    // Expectations that were not met and actions that failed.
    int Failures() const { return m_failures; }

  private:
    struct RunningRamp {
        const Ramp* ramp;
        PlayTime start;
        std::uint64_t written;
    };

    bool TakeMessages(const PlayMoment& now);
    void TakeEvents(const PlayMoment& now);
    void DecideWatches(const PlayMoment& now);
    void MoveRamps(PlayTime now);
    void PlayDueLines(const PlayMoment& now);
    bool IsDue(const ScenarioLine& line, const PlayMoment& now);
    void Play(const ScenarioLine& line, const PlayMoment& now);
    bool Write(const LiveWrite& write);
    std::string Perform(const Action& action, const PlayMoment& now);
    void EndRamp(const LiveTarget& target);
    std::string StartRamp(const Ramp& ramp, PlayTime now);
    std::string Send(const Frame& frame);
    bool IsOver() const;
    PlayTime Scaled(PlayTime time) const;

    const Scenario& m_scenario;
    PlayGround m_ground;
    double m_speed;
    std::size_t m_next = 0;       // line to play next
    PlayTime m_origin{0};         // offsets count from here
    std::time_t m_dueAtWall = 0;  // for a line with a time of day, once found; 0 before
    PlayTime m_nextEvents{0};     // when the event database is looked at again
    std::vector<CPlayWatch> m_watches;
    std::vector<RunningRamp> m_ramps;
    int m_failures = 0;
};
