#include "tools/zorctl/scenario/Player.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr PlayTime kEventInterval = std::chrono::milliseconds{100};  // as often as the process records

// When the local clock shows this second of a day next, `now` included.
std::time_t NextAt(int secondOfDay, std::time_t now) {
    std::tm local{};
    localtime_r(&now, &local);
    local.tm_hour = secondOfDay / 3600;
    local.tm_min = secondOfDay / 60 % 60;
    local.tm_sec = secondOfDay % 60;
    local.tm_isdst = -1;
    const std::time_t today = std::mktime(&local);
    if (today >= now) return today;
    ++local.tm_mday;
    local.tm_isdst = -1;
    return std::mktime(&local);
}

std::uint64_t ValueOf(const Ramp& ramp, double share) {
    const auto from = static_cast<double>(ramp.from);
    const auto to = static_cast<double>(ramp.to);
    return share >= 1 ? ramp.to : static_cast<std::uint64_t>(std::llround(from + (to - from) * share));
}

template <typename... Parts>
struct Cases : Parts... {
    using Parts::operator()...;
};
template <typename... Parts>
Cases(Parts...) -> Cases<Parts...>;

}  // namespace

CPlayer::CPlayer(const Scenario& scenario, const PlayGround& ground, double speed)
    : m_scenario(scenario), m_ground(ground), m_speed(speed) {}

PlayTime CPlayer::Scaled(PlayTime time) const {
    return PlayTime{std::llround(static_cast<double>(time.count()) / m_speed)};
}

bool CPlayer::IsOver() const {
    return m_next == m_scenario.lines.size() && m_watches.empty() && m_ramps.empty();
}

bool CPlayer::Advance(const PlayMoment& now) {
    if (IsOver()) return false;
    // What came so far is not the answer to what is played now.
    if (!TakeMessages(now)) {
        ++m_failures;
        return false;
    }
    TakeEvents(now);
    DecideWatches(now);
    MoveRamps(now.time);
    PlayDueLines(now);
    return !IsOver() && m_ground.log.Works();
}

bool CPlayer::TakeMessages(const PlayMoment& now) {
    SysVMessage message{};
    std::size_t length = 0;
    int got = 0;
    while ((got = m_ground.channel.Receive(message, length)) > 0) {
        const TakenMessage taken = TakeApart(message, length, now.wall);
        m_ground.log.Came(taken);
        for (CPlayWatch& watch : m_watches) watch.See(taken.decoded);
    }
    return got == 0;
}

void CPlayer::TakeEvents(const PlayMoment& now) {
    const bool lineDue = m_next < m_scenario.lines.size() && IsDue(m_scenario.lines[m_next], now);
    if (!lineDue && now.time < m_nextEvents) return;
    m_nextEvents = now.time + kEventInterval;
    std::vector<EventRow> events;
    m_ground.events.Take(events);
    for (const EventRow& event : events) {
        m_ground.log.Recorded(now.wall, event);
        for (CPlayWatch& watch : m_watches) watch.See(event);
    }
}

void CPlayer::DecideWatches(const PlayMoment& now) {
    const auto decided = [&now](const CPlayWatch& watch) { return watch.IsDecided(now.time); };
    for (const CPlayWatch& watch : m_watches) {
        if (!decided(watch)) continue;
        m_ground.log.Decided(now.wall, m_scenario.file, watch, now.time);
        if (!watch.IsMet()) ++m_failures;
    }
    m_watches.erase(std::remove_if(m_watches.begin(), m_watches.end(), decided), m_watches.end());
}

void CPlayer::MoveRamps(PlayTime now) {
    const auto share = [this, now](const RunningRamp& running) {
        const PlayTime over = Scaled(running.ramp->over);
        return over > PlayTime{0} ? std::chrono::duration<double>(now - running.start) / over : 1.0;
    };
    for (RunningRamp& running : m_ramps) {
        const std::uint64_t value = ValueOf(*running.ramp, share(running));
        if (value != running.written) Write({running.ramp->target, value});
        running.written = value;
    }
    const auto done = [&share](const RunningRamp& running) { return share(running) >= 1; };
    m_ramps.erase(std::remove_if(m_ramps.begin(), m_ramps.end(), done), m_ramps.end());
}

bool CPlayer::IsDue(const ScenarioLine& line, const PlayMoment& now) {
    if (!line.secondOfDay) return now.time >= m_origin + Scaled(line.offset);
    if (m_dueAtWall == 0) m_dueAtWall = NextAt(*line.secondOfDay, now.wall.tv_sec);
    return now.wall.tv_sec >= m_dueAtWall;
}

void CPlayer::PlayDueLines(const PlayMoment& now) {
    for (; m_next < m_scenario.lines.size() && IsDue(m_scenario.lines[m_next], now); ++m_next) {
        const ScenarioLine& line = m_scenario.lines[m_next];
        if (line.secondOfDay) {
            m_origin = now.time;
            m_dueAtWall = 0;
        }
        Play(line, now);
    }
}

void CPlayer::Play(const ScenarioLine& line, const PlayMoment& now) {
    if (std::holds_alternative<Expectation>(line.action)) {
        m_watches.emplace_back(line, now.time);
        return;
    }
    m_ground.log.Played(now.wall, line);
    const std::string trouble = Perform(line.action, now);
    if (trouble.empty()) return;
    m_ground.log.Failed(m_scenario.file, line, trouble);
    ++m_failures;
}

std::string CPlayer::Perform(const Action& action, const PlayMoment& now) {
    const std::time_t wall = now.wall.tv_sec;
    return std::visit(
        Cases{[this](const LiveWrites& writes) -> std::string {
                  for (const LiveWrite& write : writes) {
                      if (!write.area) EndRamp(write.target);
                      if (!Write(write)) return kNoSuchEntry;
                  }
                  return "";
              },
              [this, &now](const Ramp& ramp) { return StartRamp(ramp, now.time); },
              [this](const ReportSettings& settings) { return Send(BuildSettingsFrame(settings)); },
              [this, wall](const HistoryRequest& request) {
                  return Send(BuildHistoryRequest(request.port, DateNamed(request.day, wall), request.hour));
              },
              [this, wall](const Acknowledgement& ack) {
                  return Send(BuildHistoryAck(ack.port, DateNamed(ack.day, wall), ack.accepted));
              },
              [](const auto& /*rest*/) { return std::string(); }},
        action);
}

// Whoever sets a value by hand ends its ramp.
void CPlayer::EndRamp(const LiveTarget& target) {
    const auto moves = [&target](const RunningRamp& running) { return running.ramp->target == target; };
    m_ramps.erase(std::remove_if(m_ramps.begin(), m_ramps.end(), moves), m_ramps.end());
}

std::string CPlayer::StartRamp(const Ramp& ramp, PlayTime now) {
    EndRamp(ramp.target);
    if (!Write({ramp.target, ramp.from})) return kNoSuchEntry;
    m_ramps.push_back({&ramp, now, ramp.from});
    return "";
}

std::string CPlayer::Send(const Frame& frame) {
    return m_ground.channel.Send(frame, DeadlineIn(0), m_ground.stop) ? "" : "the command could not be sent";
}

bool CPlayer::Write(const LiveWrite& write) {
    const LiveTarget& target = write.target;
    return write.area ? m_ground.live.SetArea(target.index, *write.area)
                      : m_ground.live.Set(target.table, target.index, write.value);
}
