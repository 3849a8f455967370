// The one place that writes to the System V queue.
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "ipc/Frame.h"
#include "ipc/Messages.h"

namespace {

constexpr std::size_t kLengthSize = 2;         // in front of a posted body, little-endian
constexpr useconds_t kPauseAfterA1_9 = 35000;  // the peer needs it after this one message

}  // namespace

void CRuntimeData::PostMsg(std::uint32_t code, const void* data, std::uint32_t length) {
    if (m_outboundQueue == nullptr) return;
    if (length > kMaxBody) {
        m_failures.Report(EFailure::BodyTooLong, "message %u not sent: body of %u bytes, at most %zu fit",
                          code & 0xFFFF, length, kMaxBody);
        return;
    }
    auto* buffer = static_cast<std::uint8_t*>(std::malloc(kLengthSize + length));
    if (buffer == nullptr) {
        m_failures.Report(EFailure::NoMemory, "message %u not sent: out of memory", code & 0xFFFF);
        return;
    }
    PutLe(buffer, kLengthSize, length);
    if (length > 0) std::memcpy(buffer + kLengthSize, data, length);
    if (m_outboundQueue->Push(code, buffer) == 1) return;
    std::free(buffer);
    m_failures.Report(EFailure::NoMemory, "message %u not sent: out of memory", code & 0xFFFF);
}

void CRuntimeData::DrainOutbound() {
    std::uint32_t code = 0;
    void* buffer = nullptr;
    if (m_outboundQueue == nullptr || m_outboundQueue->Pop(code, buffer) == 0) return;
    const auto* posted = static_cast<const std::uint8_t*>(buffer);
    const auto length = static_cast<std::size_t>(GetLe(posted, kLengthSize));
    const Frame frame = BuildFrame(code, posted + kLengthSize, length);
    std::free(buffer);
    MsgSndToMain(frame.bytes.data(), frame.length);
    if ((code & 0xFFFF) == kCodeA1_9) usleep(kPauseAfterA1_9);
}

void CRuntimeData::MsgSndToMain(const std::uint8_t* frame, std::size_t length) {
    SysVMessage message{};
    message.type = kTypeToMain;
    const auto sender = static_cast<std::int32_t>(getpid());
    std::memcpy(message.text, &sender, kProcessIdSize);
    std::memcpy(message.Frame(), frame, length < kFrameCapacity ? length : kFrameCapacity);
    if (msgsnd(m_queueId, &message, kMessageTextSize, IPC_NOWAIT) == 0) return;
    if (errno == EINTR)
        CDiagLine(__func__).Print("sned failed!");
    else
        CDiagLine(__func__).Print("send failed 002!");
}
