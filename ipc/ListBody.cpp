#include "ipc/ListBody.h"

std::uint8_t* CListBody::Append() {
    const std::size_t at = m_layout.headSize + m_entries * m_layout.entrySize;
    if (at + m_layout.entrySize + m_layout.tailSize > m_layout.capacity) return nullptr;
    ++m_entries;
    return &m_bytes[at];
}

std::uint32_t CListBody::Finish() {
    PutField(Head(), m_layout.count, m_entries);
    return static_cast<std::uint32_t>(m_layout.headSize + m_entries * m_layout.entrySize + m_layout.tailSize);
}
