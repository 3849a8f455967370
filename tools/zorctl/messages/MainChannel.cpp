#include "tools/zorctl/messages/MainChannel.h"

#include <sys/msg.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/zorctl/text/HexText.h"

namespace {

std::string QueueName() {
    return "queue " + HexKey(kQueueKey);
}

}  // namespace

CDeadline DeadlineIn(double seconds) {
    if (seconds < 0) return kNever;
    const std::chrono::duration<double> span(seconds);
    return std::chrono::steady_clock::now() +
           std::chrono::duration_cast<std::chrono::steady_clock::duration>(span);
}

bool HasPassed(CDeadline deadline) {
    return std::chrono::steady_clock::now() >= deadline;
}

CStopSignals::CStopSignals() {
    sigemptyset(&m_signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&m_signals, signal);
    sigprocmask(SIG_BLOCK, &m_signals, &m_before);
}

CStopSignals::~CStopSignals() {
    sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

bool CStopSignals::Pause(long nanoseconds) {
    const timespec moment{0, nanoseconds};
    if (m_stoppedBy == 0) m_stoppedBy = std::max(sigtimedwait(&m_signals, nullptr, &moment), 0);
    return m_stoppedBy != 0;
}

bool CMainChannel::Open(CDeadline deadline, CStopSignals& stop) {
    CDeadline notice = DeadlineIn(0.5);  // a queue that is about to come is not worth a line
    while ((m_queue = msgget(kQueueKey, 0)) < 0) {
        const int error = errno;
        if (error == ENOENT && HasPassed(notice)) {
            Complain("waiting for " + QueueName());
            notice = kNever;
        }
        if (error == ENOENT && !HasPassed(deadline) && !stop.Pause()) continue;
        Complain(QueueName() + ": " +
                 (error == ENOENT ? "not there; is zor_runtime running?" : std::strerror(error)));
        return false;
    }
    return true;
}

int CMainChannel::Receive(SysVMessage& message, std::size_t& length) {
    const ssize_t got = msgrcv(m_queue, &message, sizeof message.text, m_type, IPC_NOWAIT | MSG_NOERROR);
    if (got >= 0) {
        length = static_cast<std::size_t>(got);
        return 1;
    }
    return errno == ENOMSG || errno == EINTR ? 0 : Failed(errno);
}

int CMainChannel::Peek(SysVMessage& message, std::size_t& length) {
    const int got = m_follower.Next(m_queue, message, length);
    return got < 0 ? Failed(errno) : got;
}

int CMainChannel::Failed(int error) const {
    Complain(QueueName() + ": " +
             (error == ENOSYS ? "this kernel cannot copy messages (MSG_COPY)" : std::strerror(error)));
    return -1;
}

bool CMainChannel::Send(const Frame& frame, CDeadline deadline, CStopSignals& stop) {
    return Send(MessageWith(frame.bytes.data(), frame.length), kMessageTextSize, deadline, stop);
}

bool CMainChannel::Send(const SysVMessage& message, std::size_t length, CDeadline deadline,
                        CStopSignals& stop) {
    while (msgsnd(m_queue, &message, length, IPC_NOWAIT) != 0) {
        const int error = errno;
        const bool full = error == EAGAIN || error == EINTR;
        if (full && !HasPassed(deadline) && !stop.Pause()) continue;
        Complain(QueueName() + ": " + (full ? "full" : std::strerror(error)));
        return false;
    }
    return true;
}

SysVMessage MessageWith(const std::uint8_t* frame, std::size_t length) {
    SysVMessage message{};
    message.type = kTypeFromMain;
    const auto sender = static_cast<std::int32_t>(getpid());
    std::memcpy(message.text, &sender, kProcessIdSize);
    std::memcpy(message.Frame(), frame, std::min(length, kFrameCapacity));
    return message;
}

EExit SendCommand(const SysVMessage& message, std::size_t length, double wait) {
    CStopSignals stop;
    const CDeadline deadline = DeadlineIn(wait);
    CMainChannel channel;
    const bool sent = channel.Open(deadline, stop) && channel.Send(message, length, deadline, stop);
    return sent ? EExit::Done : EExit::Failed;
}

EExit SendCommand(const Frame& frame, double wait) {
    return SendCommand(MessageWith(frame.bytes.data(), frame.length), kMessageTextSize, wait);
}
