#include "reports/PortState.h"

#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"
#include "points/Signals.h"
#include "reports/Messages.h"

PortStateBody BuildPortStateBody(const EquipmentNumber& equipment, int port, std::uint8_t stateCode) {
    PortStateBody body{};
    for (const PortStateField& field : kPortStateFields) {
        std::uint8_t* at = &body[field.at.offset];
        switch (field.source) {
            case EPortStateSource::Equipment:
                CopyReversed(at, equipment.data(), equipment.size());
                break;
            case EPortStateSource::Port:
                PutLe(at, field.at.size, static_cast<std::uint32_t>(port));
                break;
            case EPortStateSource::StateCode:
                PutLe(at, field.at.size, stateCode);
                break;
            case EPortStateSource::Constant:
                PutLe(at, field.at.size, field.constant);
                break;
        }
    }
    return body;
}

void CRuntimeData::Send_DC_A1_14(int port) {
    // The dump leaves out the equipment number and the closing byte.
    constexpr std::size_t kDumpFrom = 8;
    constexpr std::size_t kDumpLength = 9;
    constexpr std::uint8_t kUnknownIsFault = 1;
    if (m_sendflag != 1) return;
    const bool fault = m_shm->Signal(kSignalStationFault) != 0 || m_shm->Signal(kSignalEmergencyStop) != 0 ||
                       m_shm->Signal(PortBase(port) + kSignalPortFault) != 0;
    const std::uint8_t code = ChargingStateCode(fault, m_shm->GunState(port), kUnknownIsFault);
    if (code == Port(port).lastStateCode) return;
    Port(port).lastStateCode = code;
    const PortStateBody body = BuildPortStateBody(m_shm->EquipmentNumber(), port, code);
    PostMsg(kCodeA1_14, body.data(), body.size());
    CDiagLine(__func__).Dump("msgcode: 34518 data:", &body[kDumpFrom], kDumpLength);
}
