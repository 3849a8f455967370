#include "tools/zorctl/QueueState.h"

#include <sys/msg.h>

#include <cerrno>
#include <cstring>

#include "ipc/Frame.h"

namespace {

// Copies one message after the other, which stay where they are.
std::optional<QueueDirections> CountDirections(int queue, unsigned long messages) {
    QueueDirections directions;
    SysVMessage message{};
    for (unsigned long i = 0; i < messages; ++i) {
        if (msgrcv(queue, &message, sizeof message.text, static_cast<long>(i),
                   MSG_COPY | IPC_NOWAIT | MSG_NOERROR) < 0) {
            if (errno == ENOMSG) break;  // taken in the meantime
            return std::nullopt;
        }
        if (message.type == kTypeToMain) ++directions.toMain;
        if (message.type == kTypeFromMain) ++directions.fromMain;
    }
    return directions;
}

}  // namespace

QueueState LookAtQueue() {
    QueueState state;
    const int queue = msgget(kQueueKey, 0);
    if (queue < 0) return state;
    state.present = true;
    msqid_ds kernel{};
    if (msgctl(queue, IPC_STAT, &kernel) != 0) {
        state.trouble = std::strerror(errno);
        return state;
    }
    state.messages = kernel.msg_qnum;
    state.bytes = kernel.__msg_cbytes;
    state.mostBytes = kernel.msg_qbytes;
    state.sent = {kernel.msg_lspid, kernel.msg_stime};
    state.taken = {kernel.msg_lrpid, kernel.msg_rtime};
    state.directions = CountDirections(queue, state.messages);
    return state;
}
