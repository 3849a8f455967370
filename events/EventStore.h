// Writing events to the event database, through one connection.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "System/FailureLog.h"
#include "System/Sqlite.h"

struct ErrorMessage;

// One event as it is to be stored.
struct Event {
    const char* text;
    int value;
    int pointNumber;
    int table;  // 0 the YX table, 1 the second one
    std::time_t when;
    const ErrorMessage* measurements;  // to be recorded with it; null for none
};

// What storing an event found. Printed only when it is certain what became of the event: a transaction that
// comes to nothing takes rows back that were already there.
struct EventFindings {
    bool hasLast = false;
    std::uint32_t lastId = 0;        // newest row before this one
    std::uint32_t prunedErrMsg = 0;  // newest row of tagErrMsg when that table was pruned, else 0
    bool measured = false;           // its measurements stand in tagErrMsg
    std::string errMsgReadError;     // why the newest row of a table could not be read, else empty
    std::string soeReadError;
    std::string errors;  // lines for standard error

    void Print() const;
    // Keeps a line for standard error.
    void Complain(const char* what, const char* error);
};

// Stores events one after another. Between Begin and Commit they stand in one transaction: opening the file
// and committing for each would stall the loop for seconds on flash when hundreds of points change at once.
class CEventStore {
  public:
    explicit CEventStore(CFailureLog& failures) : m_failures(failures) {}

    // Opens the event database; a failure is printed. What follows waits for a lock out of `wait`.
    bool Open(CBusyWait& wait);
    void Close() { m_database.Close(); }
    bool IsOpen() const { return m_database.IsOpen(); }

    // Begins a transaction. Where none can be had, events stand by themselves.
    void Begin();
    bool IsTogether() const { return m_transaction.HasBegun(); }
    // True when the transaction has come to nothing unasked, and took its events with it.
    bool HasDied() const { return m_transaction.HasDied(); }
    // Ends the transaction; true when its events are stored.
    bool Commit();
    void RollBack();

    // Stores one event; failures are printed.
    EventFindings Store(const Event& event);
    // Prints what storing the event would print while somebody else keeps the file, and writes nothing.
    void Refuse(const Event& event);

    // Somebody else kept the file locked for longer than there was time to wait, since the last Begin.
    bool IsBusy() const { return m_busy; }
    // Id of the newest row seen in tagSOE, or in tagErrMsg where that serves instead.
    std::uint32_t LastId() const { return m_seenId; }

  private:
    int Write(const CSqlTextBase& sql);
    const char* WriteError() const;
    int NoteBusy(int result);
    bool FindLastSoe(EventFindings& findings, std::uint32_t& lastId);
    std::uint32_t StoreMeasurements(const Event& event, EventFindings& findings);
    // Drops what lies too far behind `lastId`; `complaint` begins the line that a failure gives.
    void Prune(const char* table, std::uint32_t lastId, const char* complaint, EventFindings& findings);
    void Vacuum(EventFindings& findings);

    CFailureLog& m_failures;
    CSqliteDb m_database;
    CSqliteTransaction m_transaction{m_database};
    CBusyWait* m_wait = nullptr;
    bool m_refusing = false;
    bool m_busy = false;
    bool m_vacuumDue = false;
    std::uint32_t m_writtenId = 0;  // last row that the transaction wrote to tagSOE, 0 before the first
    std::uint32_t m_seenId = 0;
};
