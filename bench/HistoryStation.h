// A station that has been keeping records for a while, and what storing and resending costs at least.
#pragma once

#include <cstdint>

#include "bench/Bare.h"
#include "bench/Station.h"

// Folder of the application directory in which the histories of a run wait to be used.
inline constexpr char kHistories[] = "histories";

enum class EIndexed : std::uint8_t { Yes, No };

// There is a record of each port for each hour of the last `days` days of 2023; those of the last midnight
// are pending.
struct HistoryStation : BenchStation {
    explicit HistoryStation(int days, EIndexed indexed = EIndexed::Yes);

    // Takes back what was stored and resent since.
    void Restore() const;
    // Id of the record of `port` for an hour of the last day.
    std::int64_t Id(int hour, int port) const;

    // Reads the pending records and raises their send counts.
    void RaiseBareRecords(CSqliteDb& database) const;

  private:
    int m_days;
};

// Stores a new record of each of these ports.
void StoreBareRecords(CSqliteDb& database, int firstPort, int lastPort);
