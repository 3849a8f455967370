#include <algorithm>
#include <cstring>
#include <new>

#include "ipc/MsgQueue.h"

CMsgQueue::CMsgQueue(const char* name) : m_name(strdup(name)) {}

CLinuxMsgQueue::CLinuxMsgQueue(const char* name)
    : CMsgQueue(name), m_mutex(new CLinuxMutex("Msg Mutex")), m_sem(new CLinuxCountingSem(0)) {}

int CLinuxMsgQueue::PopByCode(std::uint32_t filter, std::uint32_t& code, void*& buffer) {
    if (!m_sem->Wait(0, 0)) return 0;
    m_mutex->Lock();
    if (m_entries.empty()) {
        m_mutex->Unlock();
        return 0;
    }
    const auto match = std::find_if(m_entries.begin(), m_entries.end(), [filter](const Entry& entry) {
        return filter == kAnyCode || (entry.code & 0xFFFF) == filter;
    });
    if (match != m_entries.end()) {
        code = match->code;
        buffer = match->buffer;
        m_entries.erase(match);
    }
    m_mutex->Unlock();
    return 1;
}

int CLinuxMsgQueue::Pop(std::uint32_t& code, void*& buffer) {
    return PopByCode(kAnyCode, code, buffer);
}

int CLinuxMsgQueue::Push(std::uint32_t code, void* buffer) {
    m_mutex->Lock();
    try {
        m_entries.push_back({code, buffer});
    } catch (const std::bad_alloc&) {  // a full memory costs this message, not the process
        m_mutex->Unlock();
        return 0;
    }
    m_mutex->Unlock();
    m_sem->Post();
    return 1;
}
