#include "tools/zorctl/station/QueueState.h"

#include <sys/msg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ipc/Frame.h"
#include "tools/zorctl/messages/QueueCopy.h"

namespace {

std::optional<QueueDirections> CountDirections(int queue) {
    const auto messages = CopyQueue(queue, 0);
    if (!messages) return std::nullopt;
    QueueDirections directions;
    for (const QueuedMessage& queued : *messages) {
        const long type = queued.message.type;
        ++(type == kTypeToMain     ? directions.toMain
           : type == kTypeFromMain ? directions.fromMain
                                   : directions.others[type]);
    }
    return directions;
}

}  // namespace

bool IsFull(const QueueState& queue) {
    return queue.mostBytes > 0 && queue.bytes + kMessageTextSize > queue.mostBytes;
}

std::time_t CommandsWaitFor(const QueueState& queue) {
    constexpr std::time_t kLongestAtWork = 15;
    if (!queue.directions || queue.directions->fromMain == 0) return 0;
    // All that waits has been there since the last act of either side.
    const std::time_t waited = std::time(nullptr) - std::max(queue.sent.time, queue.taken.time);
    return waited > kLongestAtWork ? waited : 0;
}

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
    state.directions = CountDirections(queue);
    return state;
}
