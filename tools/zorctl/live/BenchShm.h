// Live values, written as the acquisition side does and read back entry by entry.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "points/ShmCtrl.h"

// What holds numbers in the shared memory. The index of a gun state is its port (0 and 1 share one), the
// equipment number has index 0; its bytes in stored order are those of the number from the lowest on.
enum class ELiveTable : std::uint8_t { Yx, Yx2, Yc, Dd, Gun, Equipment };

// The table's name on the command line.
const char* TableName(ELiveTable table);
// "yc 231", as complaints name an entry.
std::string EntryName(ELiveTable table, int index);

inline constexpr char kNoSuchEntry[] = "the shared memory has no such entry";

using LiveArea = std::array<std::uint8_t, kEntryAreaSize>;

struct YcValue {
    std::uint32_t raw;
    float coefficient;
    LiveArea area;

    // Raw value times coefficient, as people read it.
    std::string Text() const;
};

// Setters return false and readers nothing where the platform has no such entry. Creates the segment when it
// is missing, as every user of the library does.
class CBenchShm : public CShmCTRL {
  public:
    // False where the segment cannot be used at all: nothing of it can be read or written then.
    bool IsOpen() { return getYx(0) != nullptr; }

    // The state, raw value, counter (in units of 1/10000) or number of an entry. Setting the raw value of a
    // telemetry entry also sets the coefficient to 1 where it is 0: such an entry counts as never written,
    // and its value would stay 0 for good.
    bool Set(ELiveTable table, int index, std::uint64_t value);
    std::optional<std::uint64_t> Get(ELiveTable table, int index);

    // The rest of a telemetry entry.
    bool SetCoefficient(int index, float coefficient);
    bool SetArea(int index, const LiveArea& area);
    std::optional<YcValue> GetYc(int index);

    // Why a setter or a reader of the entry `what` has failed.
    std::string WhyNot(const std::string& what);

  private:
    struct Number {
        std::uint8_t* at;  // null for an entry that does not exist
        std::size_t width;
    };
    Number NumberAt(ELiveTable table, int index);
};
