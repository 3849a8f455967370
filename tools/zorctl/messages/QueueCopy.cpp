#include "tools/zorctl/messages/QueueCopy.h"

#include <sys/msg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

bool QueuedMessage::operator==(const QueuedMessage& other) const {
    return message.type == other.message.type && length == other.length &&
           std::memcmp(message.text, other.message.text, length) == 0;
}

std::optional<std::vector<QueuedMessage>> CopyQueue(int queue, long type) {
    std::vector<QueuedMessage> messages;
    QueuedMessage copy{};
    for (long place = 0;; ++place) {
        const ssize_t got = msgrcv(queue, &copy.message, sizeof copy.message.text, place,
                                   MSG_COPY | IPC_NOWAIT | MSG_NOERROR);
        if (got < 0 && errno == ENOMSG) return messages;
        if (got < 0) return std::nullopt;
        copy.length = static_cast<std::size_t>(got);
        if (type == 0 || copy.message.type == type) messages.push_back(copy);
    }
}

bool CQueueFollower::Look(int queue) {
    const auto now = CopyQueue(queue, m_type);
    const auto again = CopyQueue(queue, m_type);
    if (!now || !again) return false;
    if (*now != *again) return true;  // messages came or went meanwhile, so places may have been passed over
    // They come at the end and mostly go at the beginning: what was there before is the longest beginning of
    // what is there now that ended the last look.
    std::size_t known = std::min(m_seen.size(), now->size());
    while (known > 0 && !std::equal(now->begin(), now->begin() + static_cast<std::ptrdiff_t>(known),
                                    m_seen.end() - static_cast<std::ptrdiff_t>(known)))
        --known;
    m_fresh.assign(now->begin() + static_cast<std::ptrdiff_t>(known), now->end());
    m_seen = *now;
    return true;
}

int CQueueFollower::Next(int queue, SysVMessage& message, std::size_t& length) {
    if (m_fresh.empty() && !Look(queue)) return -1;
    if (m_fresh.empty()) return 0;
    message = m_fresh.front().message;
    length = m_fresh.front().length;
    m_fresh.pop_front();
    return 1;
}
