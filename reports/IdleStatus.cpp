#include "reports/IdleStatus.h"

#include <cJSON.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>

#include "app/RuntimeData.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"
#include "points/Signals.h"
#include "reports/PortState.h"
#include "reports/YcConversion.h"

namespace {

// A JSON object that remembers whether every member found memory.
class CDocument {
  public:
    CDocument() : m_object(cJSON_CreateObject()) {}
    ~CDocument() { cJSON_Delete(m_object); }
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;

    char* Print() const { return m_complete ? cJSON_PrintBuffered(m_object, kIdleCapacity, 0) : nullptr; }

    // Takes over `item`; `key` is not copied.
    void Add(const char* key, cJSON* item) {
        if (cJSON_AddItemToObjectCS(m_object, key, item) != 0) return;
        cJSON_Delete(item);
        m_complete = false;
    }

  private:
    cJSON* m_object;
    bool m_complete = true;
};

std::uint8_t WorkCode(CShmCTRL& shm, int port) {
    return ChargingStateCode(PortHasFault(shm, port), shm.GunState(port), kUnknownIsNoCode);
}

// What a document is made from.
struct IdleSource {
    CShmCTRL& shm;
    const GroupPlaces& places;
    int port;
    std::uint32_t sequence;

    int Base() const { return PortBase(port); }
    cJSON* Signal(int point) const { return cJSON_CreateNumber(shm.Signal(Base() + point)); }
};

cJSON* Time(const IdleSource& /*source*/) {
    char text[32];
    std::snprintf(text, sizeof text, "%lld", static_cast<long long>(std::time(nullptr)));
    return cJSON_CreateString(text);
}

cJSON* Equipment(const IdleSource& source) {
    constexpr char kDigits[] = "0123456789abcdef";
    char text[2 * kEquipmentSize + 1] = "";
    char* end = text;
    for (const std::uint8_t byte : source.shm.EquipmentNumber()) {
        *end++ = kDigits[byte >> 4];
        *end++ = kDigits[byte & 0xF];
    }
    return cJSON_CreateString(text);
}

cJSON* WorkFlag(const IdleSource& source) {
    char text[8];
    std::snprintf(text, sizeof text, "%04d", WorkCode(source.shm, source.port));
    return cJSON_CreateString(text);
}

// The value of a point, 0 without one.
cJSON* Scaled(const YcPointRecord* point, double perUnit) {
    const auto value = static_cast<std::uint16_t>(point != nullptr ? ConvertU(*point) : 0);
    return cJSON_CreateNumber(value / perUnit);
}

cJSON* Meter(const IdleSource& source) {
    char text[64];
    const auto counter = static_cast<double>(source.shm.Counter(CounterBase(source.port)));
    std::snprintf(text, sizeof text, "%f", counter / 10000.0);
    return cJSON_CreateString(text);
}

struct IdleMember {
    const char* key;
    cJSON* (*make)(const IdleSource& source);
};

// In the order of the document.
constexpr IdleMember kMembers[] = {
    {"time", Time},
    {"sn", [](const IdleSource& source) { return cJSON_CreateNumber(source.sequence); }},
    {"type", [](const IdleSource& /*source*/) { return cJSON_CreateString("dcNonWork"); }},
    {"ver", [](const IdleSource& /*source*/) { return cJSON_CreateString("1.0.0.20230601"); }},
    {"equipNo", Equipment},
    {"portNo", [](const IdleSource& source) { return cJSON_CreateNumber(source.port); }},
    {"connFlag", [](const IdleSource& source) { return source.Signal(kSignalGunConnected); }},
    {"gunHdrFlag", [](const IdleSource& source) { return source.Signal(kSignalGunInHolder); }},
    {"lockFlag", [](const IdleSource& source) { return source.Signal(kSignalGunLocked); }},
    {"ctrFlag", [](const IdleSource& source) { return source.Signal(kSignalControl); }},
    {"workFlag", WorkFlag},
    {"outputV", [](const IdleSource& source) { return Scaled(source.places.voltage, 10.0); }},
    {"outputC", [](const IdleSource& source) { return Scaled(source.places.current, 100.0); }},
    {"meterVal", Meter},
};

}  // namespace

bool IsIdleMember(const char* key) {
    return std::any_of(std::begin(kMembers), std::end(kMembers),
                       [key](const IdleMember& member) { return std::strcmp(member.key, key) == 0; });
}

char* BuildIdleDocument(CShmCTRL& shm, const GroupPlaces& places, int port, std::uint32_t sequence) {
    CDocument document;
    for (const IdleMember& member : kMembers)
        document.Add(member.key, member.make({shm, places, port, sequence}));
    return document.Print();
}

void CRuntimeData::Send_DC_A1_6(const GroupPlaces& places, int port) {
    constexpr std::uint32_t kSequenceEnd = 65536;
    std::uint32_t& ticks = Port(port).idleTicks;
    if (m_shm->Signal(PortBase(port) + kSignalCharging) != 0) {
        ticks = 0;
        return;
    }
    if (ticks < m_idleReportTicks) {
        ++ticks;
        return;
    }
    ticks = 0;
    // Used up by the building, whatever becomes of the document.
    const std::uint32_t sequence = m_idleSequence < kSequenceEnd ? m_idleSequence : 0;
    m_idleSequence = sequence + 1;
    char* text = BuildIdleDocument(*m_shm, places, port, sequence);
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    if (length > 0 && length <= kIdleCapacity) PostMsg(kCodeA1_6, text, static_cast<std::uint32_t>(length));
    std::free(text);
}
