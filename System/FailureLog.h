// Failures that the diagnostic texts leave silent: one plain line on standard error, at most once per cause
// and hour.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

enum class EFailure : std::uint8_t {
    BodyTooLong,       // a body that no frame can carry was posted
    NoMemory,          // an allocation failed
    ReceiveFailed,     // the queue refuses to be read
    OversizedCommand,  // a command that no message of the protocol can be
    QueueLost,         // the queue was removed
    EventsLost,        // events cannot be stored, and not because somebody else uses their file
    EventsDropped,     // too many events wait for their file
    EventSetUp,        // a table of the event database cannot be created
    HistoryIndex,      // an index of the history database cannot be created
    HistoryLost,       // the history database cannot be read
    Count              // how many causes there are; no cause itself
};

class CFailureLog {
  public:
    // Prints "zor_runtime: " and the text, unless `cause` was reported within the last hour of the wall
    // clock. A clock that was set back counts as an hour gone.
    void Report(EFailure cause, const char* format, ...) __attribute__((format(printf, 3, 4)));

  private:
    struct Last {
        bool reported = false;
        std::time_t when = 0;
    };
    Last m_last[static_cast<std::size_t>(EFailure::Count)];
};
