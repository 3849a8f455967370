// Messages copied from the System V queue, which stay where they are.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "ipc/Frame.h"

struct QueuedMessage {
    SysVMessage message;
    std::size_t length;  // of its text

    bool operator==(const QueuedMessage& other) const;
};

// Copies the messages of a type, 0 for all, oldest first. No value where the kernel cannot copy or the queue
// cannot be read; `errno` tells: ENOSYS for a kernel without MSG_COPY.
std::optional<std::vector<QueuedMessage>> CopyQueue(int queue, long type);

// Follows the messages of a type in the queue, by default those to zor_main. One that comes and is taken
// between two looks is never seen, and of equal ones that follow each other some may be missed.
class CQueueFollower {
  public:
    explicit CQueueFollower(long type = kTypeToMain) : m_type(type) {}

    // The next message that was not there in the looks before: 1, 0 when there is none, -1 as CopyQueue
    // fails.
    int Next(int queue, SysVMessage& message, std::size_t& length);

  private:
    bool Look(int queue);

    long m_type;
    std::vector<QueuedMessage> m_seen;
    std::deque<QueuedMessage> m_fresh;
};
