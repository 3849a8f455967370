// The changes of one walk over the status points, until they are stored.
#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "System/BusyWait.h"
#include "System/FailureLog.h"
#include "events/EventStore.h"
#include "events/EventText.h"
#include "points/PointRecords.h"

// One change of a status point.
struct StatusChange {
    const YxPointRecord* point;  // of the point list, which outlives every walk
    std::time_t when;
    std::unique_ptr<ErrorMessage> measurements;  // null where the change calls for none
    std::uint8_t value;
    bool rising;
    bool refused;  // it has been said that the file was locked
};

// Keeps the changes of a walk and stores them together, in order. Those whose file somebody else keeps locked
// stay, with their time and measurements, and are stored by a later walk; every other failure loses its
// event.
class CEventWalk {
  public:
    // Changes that wait for their file at most; beyond that the oldest go.
    static constexpr std::size_t kMostKept = 10000;

    CEventWalk(CFailureLog& failures, CBusyWait& wait)
        : m_failures(failures), m_wait(wait), m_store(failures) {}

    // Makes room for the changes of a walk over so many points, so that it needs no memory.
    void Reserve(std::size_t points);

    // Takes a change that is seen now.
    void Add(const YxPointRecord& point, bool rising, CShmCTRL& shm);
    bool IsEmpty() const { return m_changes.empty(); }

    // Opens the event database for Store. False when it cannot be had: the changes are lost then.
    bool Open();
    // Changes that no walk has tried to store yet.
    const StatusChange* NewBegin() const { return m_changes.data() + m_kept; }
    const StatusChange* NewEnd() const { return m_changes.data() + m_changes.size(); }
    // Stores what can be stored, and closes the database.
    void Store();

    // As CEventStore::LastId.
    std::uint32_t LastId() const { return m_store.LastId(); }

  private:
    bool HasRoom();
    bool StoreTogether();
    void StoreSingly();
    Event EventOf(const StatusChange& change);
    void KeepFrom(std::size_t first);
    void Clear();

    CFailureLog& m_failures;
    CBusyWait& m_wait;
    CEventStore m_store;
    std::vector<StatusChange> m_changes;
    std::vector<EventFindings> m_findings;  // of the events that stand in a transaction
    std::size_t m_kept = 0;                 // that many of the changes come from earlier walks
    std::size_t m_reserved = 0;
    std::string m_text;  // working text, with room for any event
};
