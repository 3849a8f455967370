#include "tools/zorctl/watch/StationView.h"

#include <algorithm>

#include "System/DateTime.h"
#include "reports/SignalBodies.h"
#include "tools/zorctl/messages/Decode.h"
#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/station/Processes.h"

namespace {

constexpr int kBusyMs = 50;  // no look takes longer for a locked event file

std::string ActText(const char* what, const QueueAct& act) {
    if (act.process == 0) return std::string("none ") + what + " yet";
    return std::string("last ") + what + ' ' + CDateTime(act.time).Format(kClockFormat);
}

// A line of a message without what is the same in all of them.
std::string BriefLine(const std::timespec& time, DecodedFrame decoded) {
    decoded.fields.erase(
        std::remove_if(decoded.fields.begin(), decoded.fields.end(),
                       [](const DecodedField& field) { return field.name == kListEquipment.name; }),
        decoded.fields.end());
    return TextLine({TimeText(time, kClockFormat), std::nullopt, ""}, decoded);
}

}  // namespace

void CRecent::Add(const std::string& line, std::optional<CMoment> since) {
    m_lines.push_back({line, since});
    if (m_lines.size() > kMost) m_lines.pop_front();
}

std::vector<Shown> CRecent::LinesAt(CMoment now) const {
    std::vector<Shown> lines;
    for (const Line& line : m_lines)
        lines.push_back({line.text, line.since ? AgeAt(now, *line.since) : kLongAgo});
    return lines;
}

CStationView::CStationView(const std::string& directory, bool takes, CStopSignals& stop)
    : m_takes(takes), m_stop(stop), m_live(directory), m_eventReader(directory, CRecent::kMost, kBusyMs) {
    m_picture.directory = directory;
}

void CStationView::Look(CMoment now, const std::timespec& clock) {
    m_picture.time = CDateTime(clock.tv_sec).Format(kClockFormat);
    LookForProcess(now);
    m_live.Look(m_picture, now);
    LookAtEvents(now);
    LookAtMessages(now, clock);
    m_hasLooked = true;
}

// Reading all of /proc is for now and then only.
void CStationView::LookForProcess(CMoment now) {
    constexpr double kPauseSeconds = 1;
    if (m_processLook && AgeAt(now, *m_processLook) < kPauseSeconds) return;
    m_processLook = now;
    std::string ids;
    for (const ProcessInfo& process : LivingProcesses())
        if (process.name == kRuntimeName) ids += ' ' + std::to_string(process.id);
    m_picture.process = kRuntimeName + (ids.empty() ? std::string(" is not running") : ids);
}

void CStationView::LookAtEvents(CMoment now) {
    std::vector<EventRow> fresh;
    m_picture.events.note = m_eventReader.Take(fresh);
    for (const EventRow& event : fresh) m_events.Add(event.time + ' ' + event.text, Since(now));
    m_picture.events.lines = m_events.LinesAt(now);
}

void CStationView::LookAtMessages(CMoment now, const std::timespec& clock) {
    m_picture.messages.note = FollowQueue(LookAtQueue());
    FetchMessages(now, clock);
    m_picture.messages.lines = m_messages.LinesAt(now);
}

// Uses the queue that is there now. Returns what is to be said of it.
std::string CStationView::FollowQueue(const QueueState& queue) {
    if (!queue.present || !queue.trouble.empty()) {
        m_channel.reset();
        return "queue " + (queue.present ? queue.trouble : "not there");
    }
    if (!m_takes && !queue.directions) return "this kernel cannot copy them; --take takes them";
    if (!m_channel && !m_channel.emplace().Open(DeadlineIn(0), m_stop)) m_channel.reset();
    const std::string whose =
        m_takes ? "taken by this view" : std::to_string(queue.directions->toMain) + " waiting";
    return whose + "; " + ActText("sent", queue.sent) + ", " + ActText("taken", queue.taken);
}

void CStationView::FetchMessages(CMoment now, const std::timespec& clock) {
    SysVMessage message{};
    std::size_t length = 0;
    int got = 1;
    for (std::size_t i = 0; m_channel && got > 0 && i < CRecent::kMost; ++i) {
        got = m_takes ? m_channel->Receive(message, length) : m_channel->Peek(message, length);
        if (got > 0) m_messages.Add(BriefLine(clock, TakeApart(message, length).decoded), Since(now));
    }
    if (got < 0) m_channel.reset();  // a queue that was made anew is found by the next look
}
