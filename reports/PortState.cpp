#include "reports/PortState.h"

#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"
#include "points/Signals.h"

bool PortHasFault(CShmCTRL& shm, int port) {
    return shm.Signal(kSignalStationFault) != 0 || shm.Signal(kSignalEmergencyStop) != 0 ||
           shm.Signal(PortBase(port) + kSignalPortFault) != 0;
}

PortStateBody BuildPortStateBody(const PortStateSource& source) {
    PortStateBody body{};
    for (const PortStateField& field : kPortStateFields)
        if (field.number != nullptr)
            PutField(body.data(), field.at, field.number(source));
        else
            PutReversed(body.data(), field.at, source.equipment.data());
    return body;
}

void CRuntimeData::Send_DC_A1_14(int port) {
    // The dump leaves out the equipment number and the closing byte.
    constexpr std::size_t kDumpFrom = 8;
    constexpr std::size_t kDumpLength = 9;
    if (m_sendflag != 1) return;
    const std::uint8_t code =
        ChargingStateCode(PortHasFault(*m_shm, port), m_shm->GunState(port), kUnknownIsFault);
    if (code == Port(port).lastStateCode) return;
    Port(port).lastStateCode = code;
    const PortStateBody body = BuildPortStateBody({m_shm->EquipmentNumber(), port, code});
    PostMsg(kCodeA1_14, body.data(), body.size());
    CDiagLine(__func__).Dump("msgcode: 34518 data:", &body[kDumpFrom], kDumpLength);
}
