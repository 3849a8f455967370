// Bodies that hold a list: a head, N entries of one size, and sometimes a closing byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "ipc/BodyField.h"

struct ListBodyLayout {
    std::uint16_t headSize;
    std::uint16_t entrySize;
    std::uint16_t tailSize;
    std::uint16_t capacity;  // no body grows beyond this many bytes
    BodyField count;         // in the head: N
};

inline constexpr std::size_t kLargestListBody = 1024;

// Builds such a body, zero-filled. Entries that do not fit are refused, so that N never lies.
class CListBody {
  public:
    explicit CListBody(const ListBodyLayout& layout) : m_layout(layout) {}

    // The body from its first byte, for the fields of the head.
    std::uint8_t* Head() { return m_bytes.data(); }
    // Room for one more entry, or null where none is left.
    std::uint8_t* Append() {
        const std::size_t at = m_layout.headSize + m_entries * m_layout.entrySize;
        if (at + m_layout.entrySize + m_layout.tailSize > m_layout.capacity) return nullptr;
        ++m_entries;
        return &m_bytes[at];
    }
    // Writes N; returns the body's length. The closing bytes, if any, are the last ones of it.
    std::uint32_t Finish() {
        PutField(Head(), m_layout.count, m_entries);
        return static_cast<std::uint32_t>(m_layout.headSize + m_entries * m_layout.entrySize +
                                          m_layout.tailSize);
    }

    std::size_t Entries() const { return m_entries; }
    const std::uint8_t* Data() const { return m_bytes.data(); }

  private:
    const ListBodyLayout& m_layout;
    std::size_t m_entries = 0;
    std::array<std::uint8_t, kLargestListBody> m_bytes{};
};
