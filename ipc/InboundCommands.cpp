// Commands of zor_main.
#include <sys/msg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "ipc/Commands.h"

namespace {

// Every line of this file names the one operation that zor_main's side knows.
constexpr char kOperation[] = "MsgRcvFromMain";

std::uint16_t ReadSetting(const std::uint8_t* frame, std::size_t offset) {
    return static_cast<std::uint16_t>(GetLe(frame + offset, 2));
}

// What the handlers of the history commands get: the bytes behind the argument byte, zeros after them.
struct HistoryArea {
    std::uint8_t bytes[kHistoryAreaSize] = {};

    explicit HistoryArea(const FrameParts& parts) {
        constexpr std::size_t kSkip = kHistoryData - kFrameData;
        if (parts.dataLength <= kSkip) return;
        std::memcpy(bytes, parts.data + kSkip, std::min(parts.dataLength - kSkip, sizeof bytes));
    }
};

}  // namespace

void CRuntimeData::MsgRcvFromMain() {
    SysVMessage message{};
    m_lastReceiveResult =
        static_cast<std::int32_t>(msgrcv(m_queueId, &message, kMessageTextSize, kTypeFromMain, IPC_NOWAIT));
    if (m_lastReceiveResult < 0) return HandleReceiveFailure(errno);
    const FrameParts parts = SplitFrame(message.Frame(), kFrameCapacity);
    if (parts.count > kMaxInboundCount) {
        CDiagLine(kOperation).Print("ncount is error!");
        return;
    }
    CDiagLine(kOperation)
        .PrintUnended("-------------------rev from zor_main data--------------------------------");
    CDiagLine(kOperation).PrintUnended("ncount:%d\n", parts.count);
    DumpBytes(message.Frame(), parts.count + kFrameCode);
    CDiagLine(kOperation).Print("-------------------------------------------------------------------------");
    CDiagLine(kOperation).Print("msg:%d\n", parts.code);
    HandleCommand(message.Frame(), parts);
}

void CRuntimeData::HandleReceiveFailure(int error) {
    switch (error) {
        case ENOMSG:
            return;
        case EINTR:
            return CDiagLine(kOperation).Print("rcv error!");
        case E2BIG:
            return DropOversized();
        case EIDRM:
        case EINVAL:
            if (m_queueId >= 0) return GetQueueAgain();
            break;
        default:
            break;
    }
    m_failures.Report(EFailure::ReceiveFailed, "cannot read from queue 0x%X: %s",
                      static_cast<unsigned>(kQueueKey), std::strerror(error));
}

// The kernel hands out the oldest message first, and one that is too long never: all behind it would wait for
// ever.
void CRuntimeData::DropOversized() {
    SysVMessage message{};
    if (msgrcv(m_queueId, &message, kMessageTextSize, kTypeFromMain, IPC_NOWAIT | MSG_NOERROR) < 0) return;
    m_failures.Report(EFailure::OversizedCommand, "dropped a command of more than %zu bytes",
                      kMessageTextSize);
}

void CRuntimeData::GetQueueAgain() {
    m_failures.Report(EFailure::QueueLost, "queue 0x%X was removed", static_cast<unsigned>(kQueueKey));
    // Nobody may find a queue with this key for a moment: then the next poll tries again.
    if (const int queue = msgget(kQueueKey, IPC_CREAT | kQueuePermissions); queue >= 0) m_queueId = queue;
}

void CRuntimeData::HandleCommand(const std::uint8_t* frame, const FrameParts& parts) {
    switch (parts.code) {
        case kCommandHistoryRequest:
            MsgCall_A1_16(HistoryArea(parts).bytes, frame[kHistoryArgument]);
            break;
        case kCommandHistoryAck:
            CDiagLine(kOperation).Print("rcv A1_16 back data!");
            DealCacheData(HistoryArea(parts).bytes, frame[kHistoryArgument]);
            break;
        case kCommandSettings:
            ApplyReportSettings(frame);
            break;
        default:
            break;
    }
}

void CRuntimeData::ApplyReportSettings(const std::uint8_t* frame) {
    constexpr std::uint32_t kShortestSnapshot = 10;      // seconds
    constexpr std::uint32_t kShortestLongInterval = 30;  // minutes
    m_sendflag = ReadSetting(frame, kSettingsEnable) == kEnableReporting ? 1 : 0;
    if (m_sendflag == 1) {
        ApplyReportInterval(ReadSetting(frame, kSettingsA1_3), "A1_3", kAcCharger, m_workReportTicks);
        ApplyReportInterval(ReadSetting(frame, kSettingsA1_4), "A1_4", kAcCharger, m_idleReportTicks);
        ApplyReportInterval(ReadSetting(frame, kSettingsA1_5), "A1_5", kDcCharger, m_workReportTicks);
        ApplyReportInterval(ReadSetting(frame, kSettingsA1_6), "A1_6", kDcCharger, m_idleReportTicks);

        std::uint32_t snapshot = ReadSetting(frame, kSettingsSnapshot);
        if (snapshot < kShortestSnapshot) {
            snapshot = kShortestSnapshot;
            CDiagLine(kOperation).Print("Set A1_12 or A1_13 Minvalues:%u\n", snapshot);
        }
        CDiagLine(kOperation).Print(m_chargerKind == kAcCharger ? "A1_12:%u\n" : "A1_13:%u\n", snapshot);
        m_yxReportTicks = snapshot * 1000 / m_tickPeriodMs;

        const std::uint32_t minutes = ReadSetting(frame, kSettingsLongInterval);
        m_minuteIntervalTicks = std::max(minutes, kShortestLongInterval) * 60000 / m_tickPeriodMs;
        Checkcache();
        m_forceYxReport = 1;
    }
    CDiagLine(kOperation).Print("m_sendflag:%d\n", m_sendflag);
}

void CRuntimeData::ApplyReportInterval(std::uint32_t seconds, const char* report, std::int32_t kind,
                                       std::uint32_t& ticks) {
    // The floor that is printed is not the one that is applied: zor_main knows both.
    constexpr std::uint32_t kPrintedFloor = 3;
    constexpr std::uint32_t kAppliedFloor = 5;
    if (seconds < kPrintedFloor) {
        seconds = kPrintedFloor;
        CDiagLine(kOperation).Print("Set %s Minvalues:%u\n", report, seconds);
    }
    if (m_chargerKind != kind) return;
    CDiagLine(kOperation).Print("%s:%u\n", report, seconds);
    ticks = std::max(seconds, kAppliedFloor) * 1000 / m_tickPeriodMs;
}
