// Live values of the station, read from shared memory through the platform library.
#pragma once

#include <cshm.h>

#include <array>
#include <cstdint>

#include "points/LiveEntry.h"

// A telemetry entry, as far as it is used.
struct LiveYc {
    std::uint8_t area[kEntryAreaSize];  // free-form bytes; a text in it need not end with a NUL
    float coefficient;
    std::uint32_t raw;
};

// The only class that touches the library's data members. Every reader goes to shared memory, which other
// processes write at any time, and gives zeros where the platform has no entry.
class CShmCTRL : public CShm {
  public:
    // Puts YC and YX entries 0 to 611 to their initial state: cleared, coefficient 1.0, and points 102 and
    // 230 on.
    virtual void ResetLiveValues();
    virtual ~CShmCTRL() = default;

    // State of YX point `index` of the first table; 0 is off.
    std::uint8_t Signal(int index);
    // Reads the state of point `index` of the table that `source` names (kSourceYx, kSourceYx2). False, with
    // `state` untouched, for another source and for an entry that does not exist.
    bool ReadSignal(std::int32_t source, int index, std::uint8_t& state);
    LiveYc Yc(int index);
    // Energy counter `index`, units of 1/10000.
    std::uint64_t Counter(int index);
    // Gun state of a port. Ports 0 and 1 share an entry, here and below.
    std::uint8_t GunState(int port);
    // The equipment number as stored; reports send it last byte first.
    std::array<std::uint8_t, kEquipmentSize> EquipmentNumber();
    // A copy of the port's charging area.
    std::array<std::uint8_t, kChargingAreaSize> ChargingArea(int port);

  protected:
    // Places of the shared areas, null where the platform has none (or none for that port).
    std::uint8_t* GunEntry(int port);
    std::uint8_t* DeviceArea();
    std::uint8_t* ChargingAreaOf(int port);
};
