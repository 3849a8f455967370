#include "reports/IdleStatus.h"

#include <cJSON.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"
#include "points/Signals.h"
#include "reports/Messages.h"
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

    void Text(const char* key, const char* value) { Add(key, cJSON_CreateString(value)); }
    void Number(const char* key, double value) { Add(key, cJSON_CreateNumber(value)); }
    char* Print() const { return m_complete ? cJSON_PrintUnformatted(m_object) : nullptr; }

  private:
    void Add(const char* key, cJSON* item) {
        if (cJSON_AddItemToObject(m_object, key, item) != 0) return;
        cJSON_Delete(item);
        m_complete = false;
    }

    cJSON* m_object;
    bool m_complete = true;
};

// Value of the last point with this number, without the port's offset; 0 without one.
std::uint16_t ScaledValue(const std::list<YcPointRecord>& points, std::int32_t number) {
    std::uint16_t value = 0;
    for (const YcPointRecord& point : points)
        if (point.pointNumber == number) value = static_cast<std::uint16_t>(ConvertU(point));
    return value;
}

std::uint8_t WorkCode(CShmCTRL& shm, int port) {
    return ChargingStateCode(PortHasFault(shm, port), shm.GunState(port), kUnknownIsNoCode);
}

}  // namespace

char* BuildIdleDocument(CShmCTRL& shm, const std::list<YcPointRecord>& points, int port,
                        std::uint32_t sequence) {
    const int base = PortBase(port);
    char text[64];
    CDocument document;
    std::snprintf(text, sizeof text, "%lld", static_cast<long long>(std::time(nullptr)));
    document.Text("time", text);
    document.Number("sn", sequence);
    document.Text("type", "dcNonWork");
    document.Text("ver", "1.0.0.20230601");
    std::size_t used = 0;
    for (const std::uint8_t byte : shm.EquipmentNumber())
        used +=
            static_cast<std::size_t>(std::snprintf(text + used, sizeof text - used, "%02x", unsigned{byte}));
    document.Text("equipNo", text);
    document.Number("portNo", port);
    document.Number("connFlag", shm.Signal(base + kSignalGunConnected));
    document.Number("gunHdrFlag", shm.Signal(base + kSignalGunInHolder));
    document.Number("lockFlag", shm.Signal(base + kSignalGunLocked));
    document.Number("ctrFlag", shm.Signal(base + kSignalControl));
    std::snprintf(text, sizeof text, "%04d", WorkCode(shm, port));
    document.Text("workFlag", text);
    document.Number("outputV", ScaledValue(points, kYcIdleVoltage) / 10.0);
    document.Number("outputC", ScaledValue(points, kYcIdleCurrent) / 100.0);
    std::snprintf(text, sizeof text, "%f", static_cast<double>(shm.Counter(CounterBase(port))) / 10000.0);
    document.Text("meterVal", text);
    return document.Print();
}

void CRuntimeData::Send_DC_A1_6(const std::list<YcPointRecord>& points, int port) {
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
    char* text = BuildIdleDocument(*m_shm, points, port, sequence);
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    if (length > 0 && length <= kIdleCapacity) PostMsg(kCodeA1_6, text, static_cast<std::uint32_t>(length));
    std::free(text);
}
