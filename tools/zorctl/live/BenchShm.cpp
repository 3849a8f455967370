#include "tools/zorctl/live/BenchShm.h"

#include <cstdio>
#include <cstring>

#include "System/Numbers.h"
#include "tools/zorctl/live/SharedSegment.h"

namespace {

std::uint8_t* Behind(void* entry, std::size_t offset) {
    return entry != nullptr ? static_cast<std::uint8_t*>(entry) + offset : nullptr;
}

float LoadFloat(const std::uint8_t* at) {
    const auto bits = static_cast<std::uint32_t>(GetLe(at, sizeof(std::uint32_t)));
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void StoreFloat(std::uint8_t* at, float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    PutLe(at, sizeof bits, bits);
}

}  // namespace

const char* TableName(ELiveTable table) {
    constexpr const char* kNames[] = {"yx", "yx2", "yc", "dd", "gun", "equipment"};
    return kNames[static_cast<std::size_t>(table)];
}

std::string EntryName(ELiveTable table, int index) {
    const std::string name = TableName(table);
    return table == ELiveTable::Equipment ? name : name + ' ' + std::to_string(index);
}

std::string YcValue::Text() const {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(static_cast<float>(raw) * coefficient));
    return text;
}

CBenchShm::Number CBenchShm::NumberAt(ELiveTable table, int index) {
    switch (table) {
        case ELiveTable::Yx:
            return {Behind(getYx(index), kYxState), 1};
        case ELiveTable::Yx2:
            return {Behind(getYx2(index), kYxState), 1};
        case ELiveTable::Yc:
            return {Behind(getYc(index), kYcRaw), sizeof(std::uint32_t)};
        case ELiveTable::Dd:
            return {Behind(getDd(index), kDdLow), sizeof(std::uint64_t)};
        case ELiveTable::Gun:
            return {Behind(GunEntry(index), kGunState), 1};
        case ELiveTable::Equipment:
            return {Behind(DeviceArea(), kDeviceEquipment), kEquipmentSize};
    }
    return {nullptr, 0};
}

bool CBenchShm::Set(ELiveTable table, int index, std::uint64_t value) {
    const Number number = NumberAt(table, index);
    if (number.at == nullptr) return false;
    if (table == ELiveTable::Yc && GetYc(index)->coefficient == 0.0F) SetCoefficient(index, 1.0F);
    // In one piece where the compiler can, so that a reader in another process rarely sees half a value.
    std::uint8_t bytes[sizeof value];
    PutLe(bytes, number.width, value);
    std::memcpy(number.at, bytes, number.width);
    return true;
}

std::optional<std::uint64_t> CBenchShm::Get(ELiveTable table, int index) {
    const Number number = NumberAt(table, index);
    if (number.at == nullptr) return std::nullopt;
    return GetLe(number.at, number.width);
}

bool CBenchShm::SetCoefficient(int index, float coefficient) {
    std::uint8_t* at = Behind(getYc(index), kYcCoefficient);
    if (at != nullptr) StoreFloat(at, coefficient);
    return at != nullptr;
}

bool CBenchShm::SetArea(int index, const LiveArea& area) {
    std::uint8_t* at = Behind(getYc(index), kEntryArea);
    if (at != nullptr) std::memcpy(at, area.data(), area.size());
    return at != nullptr;
}

std::optional<YcValue> CBenchShm::GetYc(int index) {
    const std::uint8_t* entry = Behind(getYc(index), 0);
    if (entry == nullptr) return std::nullopt;
    YcValue value{static_cast<std::uint32_t>(GetLe(entry + kYcRaw, sizeof value.raw)),
                  LoadFloat(entry + kYcCoefficient),
                  {}};
    std::memcpy(value.area.data(), entry + kEntryArea, value.area.size());
    return value;
}

std::string CBenchShm::WhyNot(const std::string& what) {
    if (IsOpen()) return what + ": " + kNoSuchEntry;
    const SharedSegmentState state = LookAtSharedSegment();
    return SegmentName(state) + ": " +
           (state.trouble.empty() ? "cannot be opened for writing" : state.trouble);
}
