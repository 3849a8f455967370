#include "events/EventWalk.h"

#include <algorithm>
#include <new>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "events/EventText.h"

void CEventWalk::Reserve(std::size_t points) {
    constexpr std::size_t kLongestEvent = 160;  // level, name of 127 characters, transition
    m_reserved = points;
    m_changes.reserve(points);
    m_findings.reserve(points);
    m_text.reserve(kLongestEvent);
}

// Room for one more change; a walk whose changes had to be kept needs more than was reserved.
bool CEventWalk::HasRoom() {
    if (m_changes.size() < std::min(m_changes.capacity(), m_findings.capacity())) return true;
    try {
        m_changes.reserve(2 * m_changes.size() + 1);
        m_findings.reserve(m_changes.capacity());
    } catch (const std::bad_alloc&) {  // costs this change, not the process
        m_failures.Report(EFailure::NoMemory, "an event is lost: out of memory");
        return false;
    }
    return true;
}

void CEventWalk::Add(const YxPointRecord& point, bool rising, CShmCTRL& shm) {
    if (!HasRoom()) return;
    const std::uint8_t value = point.current;
    StatusChange change{&point, std::time(nullptr), nullptr, value, rising, false};
    const int base = point.source == kSourceYx2 ? -1 : MeasuredPortBase(point.pointNumber, value);
    if (rising && base >= 0) {
        change.measurements.reset(new (std::nothrow) ErrorMessage(ReadErrorMessage(shm, base)));
        if (!change.measurements)
            m_failures.Report(EFailure::NoMemory, "measurements are lost: out of memory");
    }
    m_changes.push_back(std::move(change));
}

bool CEventWalk::Open() {
    // What has waited for the file once goes on without waiting: nothing is lost meanwhile, and the points
    // are to be looked at every tick.
    if (m_kept > 0) m_wait.Refuse();
    while (!m_store.Open(m_wait)) {
        // It costs what waited, and of the others one for each try.
        const std::size_t lost = std::min(m_kept + 1, m_changes.size());
        m_changes.erase(m_changes.begin(), m_changes.begin() + static_cast<std::ptrdiff_t>(lost));
        m_kept = 0;
        if (m_changes.empty()) return false;
    }
    return true;
}

void CEventWalk::Store() {
    m_store.Begin();
    const bool done = m_store.IsTogether() && StoreTogether();
    if (done || !m_store.IsOpen())
        Clear();
    else if (m_store.IsBusy())
        KeepFrom(0);
    else
        StoreSingly();
    m_store.Close();
}

// False when the transaction came to nothing; then nothing is stored.
bool CEventWalk::StoreTogether() {
    m_findings.clear();
    for (const StatusChange& change : m_changes) {
        m_findings.push_back(m_store.Store(EventOf(change)));
        if (!m_store.HasDied() && !m_store.IsBusy()) continue;
        m_store.RollBack();
        return false;
    }
    if (!m_store.Commit()) return false;
    for (const EventFindings& findings : m_findings) findings.Print();
    return true;
}

// Each event stands by itself, and fails or succeeds with its own messages.
void CEventWalk::StoreSingly() {
    for (std::size_t i = 0; i < m_changes.size(); ++i) {
        StatusChange& change = m_changes[i];
        const EventFindings findings = m_store.Store(EventOf(change));
        findings.Print();
        if (!m_store.IsBusy()) continue;
        change.refused = true;
        if (findings.measured) change.measurements.reset();
        return KeepFrom(i);
    }
    Clear();
}

Event CEventWalk::EventOf(const StatusChange& change) {
    const YxPointRecord& point = *change.point;
    WriteEventText(m_text, point.level, point.name, change.rising);
    return {m_text.c_str(),    change.value,
            point.pointNumber, point.source == kSourceYx2 ? 1 : 0,
            change.when,       change.measurements.get()};
}

// Somebody else keeps the file: what begins at `first` waits for a later walk.
void CEventWalk::KeepFrom(std::size_t first) {
    const auto begin = m_changes.begin();
    std::size_t gone = first;
    if (m_changes.size() - first > kMostKept) {
        gone = m_changes.size() - kMostKept;
        m_failures.Report(EFailure::EventsDropped, "%s is locked for too long: events are lost", kEventFile);
    }
    m_changes.erase(begin, begin + static_cast<std::ptrdiff_t>(gone));
    for (StatusChange& change : m_changes) {
        if (!change.refused) m_store.Refuse(EventOf(change));
        change.refused = true;
    }
    m_kept = m_changes.size();
}

void CEventWalk::Clear() {
    m_changes.clear();
    m_findings.clear();
    m_kept = 0;
    if (m_changes.capacity() <= m_reserved) return;
    // A long wait has taken memory that no ordinary walk needs.
    m_changes = std::vector<StatusChange>();
    m_findings = std::vector<EventFindings>();
    try {
        Reserve(m_reserved);
    } catch (const std::bad_alloc&) {  // the next change asks again
    }
}
