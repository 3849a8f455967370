#include "tools/zorctl/live/BenchShm.h"

#include <cstdio>
#include <cstring>

#include "System/Numbers.h"
#include "tools/zorctl/live/SharedSegment.h"

namespace {

// Stored in one piece where the compiler can, so that a reader in another process rarely sees half a value.
void Store(std::uint8_t* at, std::size_t width, std::uint64_t value) {
    std::uint8_t bytes[sizeof value];
    PutLe(bytes, width, value);
    std::memcpy(at, bytes, width);
}

std::uint64_t Load(const std::uint8_t* at, std::size_t width) {
    std::uint8_t bytes[sizeof(std::uint64_t)];
    std::memcpy(bytes, at, width);
    return GetLe(bytes, width);
}

float LoadFloat(const std::uint8_t* at) {
    const auto bits = static_cast<std::uint32_t>(Load(at, sizeof(std::uint32_t)));
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void StoreFloat(std::uint8_t* at, float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    Store(at, sizeof bits, bits);
}

}  // namespace

std::string YcValue::Text() const {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(static_cast<float>(raw) * coefficient));
    return text;
}

std::uint8_t* CBenchShm::EntryOf(ELiveTable table, int index) {
    switch (table) {
        case ELiveTable::Yx:
            return static_cast<std::uint8_t*>(getYx(index));
        case ELiveTable::Yx2:
            return static_cast<std::uint8_t*>(getYx2(index));
        case ELiveTable::Yc:
            return static_cast<std::uint8_t*>(getYc(index));
        case ELiveTable::Dd:
            return static_cast<std::uint8_t*>(getDd(index));
    }
    return nullptr;
}

std::string CBenchShm::WhyNot(const std::string& what) {
    if (IsOpen()) return what + ": " + kNoSuchEntry;
    const SharedSegmentState state = LookAtSharedSegment();
    return SegmentName(state) + ": " +
           (state.trouble.empty() ? "cannot be opened for writing" : state.trouble);
}

bool CBenchShm::SetState(ELiveTable table, int index, std::uint8_t state) {
    std::uint8_t* entry = EntryOf(table, index);
    if (entry == nullptr) return false;
    entry[kYxState] = state;
    return true;
}

std::optional<std::uint8_t> CBenchShm::State(ELiveTable table, int index) {
    const std::uint8_t* entry = EntryOf(table, index);
    if (entry == nullptr) return std::nullopt;
    return entry[kYxState];
}

bool CBenchShm::SetYc(int index, const YcChange& change) {
    std::uint8_t* entry = EntryOf(ELiveTable::Yc, index);
    if (entry == nullptr) return false;
    if (change.area) std::memcpy(entry + kEntryArea, change.area->data(), change.area->size());
    if (change.coefficient)
        StoreFloat(entry + kYcCoefficient, *change.coefficient);
    else if (change.raw && LoadFloat(entry + kYcCoefficient) == 0.0F)
        StoreFloat(entry + kYcCoefficient, 1.0F);
    if (change.raw) Store(entry + kYcRaw, sizeof *change.raw, *change.raw);
    return true;
}

std::optional<YcValue> CBenchShm::Yc(int index) {
    const std::uint8_t* entry = EntryOf(ELiveTable::Yc, index);
    if (entry == nullptr) return std::nullopt;
    YcValue value{static_cast<std::uint32_t>(Load(entry + kYcRaw, sizeof(std::uint32_t))),
                  LoadFloat(entry + kYcCoefficient),
                  {}};
    std::memcpy(value.area.data(), entry + kEntryArea, value.area.size());
    return value;
}

bool CBenchShm::SetDd(int index, std::uint64_t value) {
    std::uint8_t* entry = EntryOf(ELiveTable::Dd, index);
    if (entry == nullptr) return false;
    Store(entry + kDdLow, sizeof value, value);
    return true;
}

std::optional<std::uint64_t> CBenchShm::Dd(int index) {
    const std::uint8_t* entry = EntryOf(ELiveTable::Dd, index);
    if (entry == nullptr) return std::nullopt;
    return Load(entry + kDdLow, sizeof(std::uint64_t));
}

bool CBenchShm::SetGun(int port, std::uint8_t state) {
    std::uint8_t* entry = GunEntry(port);
    if (entry == nullptr) return false;
    entry[kGunState] = state;
    return true;
}

std::optional<std::uint8_t> CBenchShm::Gun(int port) {
    const std::uint8_t* entry = GunEntry(port);
    if (entry == nullptr) return std::nullopt;
    return entry[kGunState];
}

bool CBenchShm::SetEquipment(const std::array<std::uint8_t, kEquipmentSize>& number) {
    std::uint8_t* device = DeviceArea();
    if (device == nullptr) return false;
    std::memcpy(device + kDeviceEquipment, number.data(), number.size());
    return true;
}
