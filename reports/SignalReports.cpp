// A1_13, A1_11 and A1_15: the signals of one port.
#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"
#include "reports/SignalBodies.h"

namespace {

// The three bodies begin alike.
void PutOrigin(CListBody& body, CShmCTRL& shm, int port) {
    PutReversed(body.Head(), kListEquipment, shm.EquipmentNumber().data());
    PutField(body.Head(), kListPort, static_cast<std::uint32_t>(port));
}

}  // namespace

void CRuntimeData::SelectReportedPoints() {
    for (int port = 0; port <= kMaxPorts; ++port) Port(port).signals = SelectSignals(m_yxPoints, port);
}

void CRuntimeData::Send_DC_A1_13(int port) {
    CListBody body(kSnapshotLayout);
    PutOrigin(body, *m_shm, port);
    FaultSummaries faults;
    for (const SelectedPoint& point : Port(port).signals.points) {
        faults.Take(point);
        if (point.slot == SelectedPoint::kNoSlot) continue;
        std::uint8_t* entry = body.Append();
        if (entry == nullptr) continue;
        PutField(entry, kSnapshotEntry[0], static_cast<std::uint32_t>(point.record->address));
        PutField(entry, kSnapshotEntry[1], point.record->current);
    }
    PutField(body.Head(), kSnapshotFaultA, faults.a);
    PutField(body.Head(), kSnapshotFaultB, faults.b);
    const std::uint32_t length = body.Finish();
    CDiagLine(__func__).Dump("msgcode: 34517 data:", body.Data(), length);
    PostMsg(kCodeA1_13, body.Data(), length);
}

void CRuntimeData::Send_DC_A1_11(int port) {
    PortSignals& signals = Port(port).signals;
    CListBody body(kChangesLayout);
    PutOrigin(body, *m_shm, port);
    FaultSummaries faults;
    for (const SelectedPoint& point : signals.points) {
        faults.Take(point);
        if (point.slot == SelectedPoint::kNoSlot) continue;
        const std::uint8_t value = point.record->current;
        std::uint8_t& last = signals.lastReported[point.slot];
        if (value == last) continue;
        std::uint8_t* entry = body.Append();
        if (entry == nullptr) continue;  // stays unreported until the next tick
        PutField(entry, kChangesEntry[0], static_cast<std::uint32_t>(point.record->address));
        PutField(entry, kChangesEntry[1], value);
        last = value;
    }
    if (body.Entries() == 0) return;
    PutField(body.Head(), kChangesFaultA, faults.a);
    PutField(body.Head(), kChangesFaultB, faults.b);
    const std::uint32_t length = body.Finish();
    CDiagLine(__func__).Dump("DC_A1.11  msgcode: 34515 data:", body.Data(), length);
    PostMsg(kCodeA1_11, body.Data(), length);
}

void CRuntimeData::Send_DC_A1_15(int port) {
    PortSignals& signals = Port(port).signals;
    CListBody body(kGunLayout);
    PutOrigin(body, *m_shm, port);
    for (const GunPoint& point : signals.gunPoints) {
        const std::uint8_t value = point.record->current;
        std::uint8_t& last = signals.lastGun[point.signal];
        if (value == last) continue;
        std::uint8_t* entry = body.Append();
        if (entry == nullptr) continue;
        PutField(entry, kGunSignal, static_cast<std::uint32_t>(kGunFirstCode + point.signal));
        PutField(entry, kGunMark, kGunEntryMark);
        PutField(entry, kGunValue, value);
        last = value;
    }
    if (body.Entries() == 0) return;
    const std::uint32_t length = body.Finish();
    body.Head()[length - 1] = kGunClosing;
    PostMsg(kCodeA1_15, body.Data(), length);
    // Beyond the first entry the dump falls a byte per entry short of the body: log readers know it that way.
    CDiagLine(__func__).Dump("msgcode: 34519 data:", body.Data(), 4 * body.Entries() + 13);
}
