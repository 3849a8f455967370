// Live values, written as the acquisition side does and read back entry by entry.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "points/ShmCtrl.h"

enum class ELiveTable : std::uint8_t { Yx, Yx2, Yc, Dd };

inline constexpr char kNoSuchEntry[] = "the shared memory has no such entry";

using LiveArea = std::array<std::uint8_t, kEntryAreaSize>;

struct YcValue {
    std::uint32_t raw;
    float coefficient;
    LiveArea area;

    // Raw value times coefficient, as people read it.
    std::string Text() const;
};

// What to change in a YC entry; the rest of the entry stays.
struct YcChange {
    std::optional<std::uint32_t> raw;
    std::optional<float> coefficient;
    std::optional<LiveArea> area;
};

// Setters return false and readers nothing where the platform has no such entry. Creates the segment when it
// is missing, as every user of the library does.
class CBenchShm : public CShmCTRL {
  public:
    // False where the segment cannot be used at all: nothing of it can be read or written then.
    bool IsOpen() { return EntryOf(ELiveTable::Yx, 0) != nullptr; }

    // `table` is Yx or Yx2.
    bool SetState(ELiveTable table, int index, std::uint8_t state);
    std::optional<std::uint8_t> State(ELiveTable table, int index);

    // A raw value alone also sets the coefficient to 1 in an entry that has none (0): such an entry counts as
    // never written, and its value would stay 0 for good.
    bool SetYc(int index, const YcChange& change);
    std::optional<YcValue> Yc(int index);

    // In units of 1/10000.
    bool SetDd(int index, std::uint64_t value);
    std::optional<std::uint64_t> Dd(int index);

    // `port` 0 to 8; 0 and 1 share an entry.
    bool SetGun(int port, std::uint8_t state);
    std::optional<std::uint8_t> Gun(int port);

    bool SetEquipment(const std::array<std::uint8_t, kEquipmentSize>& number);
    bool HasEquipment() { return DeviceArea() != nullptr; }

    // Why a setter or a reader of the entry `what` has failed.
    std::string WhyNot(const std::string& what);

  private:
    std::uint8_t* EntryOf(ELiveTable table, int index);
};
