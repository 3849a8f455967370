#include "points/ShmCtrl.h"

#include <endian.h>

#include <cstring>

#include "points/PointRecords.h"
#include "points/PortNumbering.h"

namespace {

std::uint8_t ReadU8(const void* entry, std::size_t offset) {
    if (entry == nullptr) return 0;
    return *(static_cast<const volatile std::uint8_t*>(entry) + offset);
}

// One load of the whole word, so that it never mixes two writes of another process.
std::uint32_t ReadU32(const void* entry, std::size_t offset) {
    const void* at = static_cast<const std::uint8_t*>(entry) + offset;
    return le32toh(*static_cast<const volatile std::uint32_t*>(at));
}

// Clears the first word and the free-form area, which follow each other in both kinds of entry.
void ClearHead(std::uint8_t* entry) {
    std::memset(entry, 0, kEntryArea + kEntryAreaSize);
}

// Entry of `port` in a table that holds one entry per port.
std::uint8_t* EntryOfPort(void* table, std::size_t entrySize, int port) {
    if (table == nullptr || port < 0 || port > kMaxPorts) return nullptr;
    return static_cast<std::uint8_t*>(table) + static_cast<std::size_t>(PortIndex(port)) * entrySize;
}

}  // namespace

void CShmCTRL::ResetLiveValues() {
    constexpr float kCoefficient = 1.0F;
    for (int i = 0; i < kResetEntries; ++i) {
        if (auto* entry = static_cast<std::uint8_t*>(getYc(i)); entry != nullptr) {
            ClearHead(entry);
            std::memcpy(entry + kYcCoefficient, &kCoefficient, sizeof kCoefficient);
            std::memset(entry + kYcRaw, 0, sizeof(std::uint32_t));
        }
        if (auto* entry = static_cast<std::uint8_t*>(getYx(i)); entry != nullptr) {
            ClearHead(entry);
            entry[kYxState] = 0;
        }
    }
    for (const int point : {102, 102 + kPointsPerPort})
        if (auto* entry = static_cast<std::uint8_t*>(getYx(point)); entry != nullptr) entry[kYxState] = 1;
}

std::uint8_t CShmCTRL::Signal(int index) {
    return ReadU8(getYx(index), kYxState);
}

bool CShmCTRL::ReadSignal(std::int32_t source, int index, std::uint8_t& state) {
    const void* entry = nullptr;
    if (source == kSourceYx) entry = getYx(index);
    if (source == kSourceYx2) entry = getYx2(index);
    if (entry == nullptr) return false;
    state = ReadU8(entry, kYxState);
    return true;
}

LiveYc CShmCTRL::Yc(int index) {
    LiveYc live{};
    // What lies below the table is not left to the library.
    const auto* entry = index >= 0 ? static_cast<const std::uint8_t*>(getYc(index)) : nullptr;
    if (entry == nullptr) return live;
    std::memcpy(live.area, entry + kEntryArea, sizeof live.area);
    const std::uint32_t coefficient = ReadU32(entry, kYcCoefficient);
    std::memcpy(&live.coefficient, &coefficient, sizeof coefficient);
    live.raw = ReadU32(entry, kYcRaw);
    return live;
}

std::uint64_t CShmCTRL::Counter(int index) {
    constexpr int kTries = 8;  // a writer that never rests does not hold the loop
    const void* entry = index >= 0 ? getDd(index) : nullptr;
    if (entry == nullptr) return 0;
    std::uint32_t high = ReadU32(entry, kDdHigh);
    std::uint32_t low = 0;
    // A counter that carries between the two loads would show a value that it never had.
    for (int i = 0; i < kTries; ++i) {
        const std::uint32_t before = high;
        low = ReadU32(entry, kDdLow);
        high = ReadU32(entry, kDdHigh);
        if (high == before) break;
    }
    return low | std::uint64_t{high} << 32;
}

std::uint8_t CShmCTRL::GunState(int port) {
    return ReadU8(GunEntry(port), kGunState);
}

std::array<std::uint8_t, kEquipmentSize> CShmCTRL::EquipmentNumber() {
    std::array<std::uint8_t, kEquipmentSize> number{};
    if (const std::uint8_t* device = DeviceArea(); device != nullptr)
        std::memcpy(number.data(), device + kDeviceEquipment, number.size());
    return number;
}

std::array<std::uint8_t, kChargingAreaSize> CShmCTRL::ChargingArea(int port) {
    std::array<std::uint8_t, kChargingAreaSize> copy{};
    if (const std::uint8_t* area = ChargingAreaOf(port); area != nullptr)
        std::memcpy(copy.data(), area, copy.size());
    return copy;
}

std::uint8_t* CShmCTRL::GunEntry(int port) {
    return EntryOfPort(m_pGunState, kGunEntrySize, port);
}

std::uint8_t* CShmCTRL::ChargingAreaOf(int port) {
    return EntryOfPort(m_pCharge, kChargingAreaSize, port);
}

std::uint8_t* CShmCTRL::DeviceArea() {
    return static_cast<std::uint8_t*>(m_pDevice);
}
