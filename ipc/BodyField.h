// How a byte-coded body is described: one table of fields, read by the encoder and by whoever decodes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "System/Numbers.h"

// How the bytes of a field are meant.
enum class EFieldForm : std::uint8_t {
    Number,     // unsigned, little-endian
    BigEndian,  // unsigned, most significant byte first
    Reversed,   // a byte string written last byte first
    Fixed       // always the same value
};

// Place and meaning of one field.
struct BodyField {
    std::uint16_t offset;
    std::uint16_t size;  // bytes
    EFieldForm show;
    const char* name;  // null for fixed bytes
};

// Writes the low bytes of `value` as a number field of the body, entry or area at `base`.
inline void PutField(std::uint8_t* base, const BodyField& field, std::uint64_t value) {
    std::uint8_t* at = base + field.offset;
    PutLe(at, field.size, value);
    if (field.show == EFieldForm::BigEndian) std::reverse(at, at + field.size);
}

// Writes `field.size` bytes at `bytes` as a Reversed field.
inline void PutReversed(std::uint8_t* base, const BodyField& field, const std::uint8_t* bytes) {
    CopyReversed(base + field.offset, bytes, field.size);
}

// True when the fields of `table`, in order, cover `size` bytes without hole or overlap. An element of the
// table holds its BodyField as member `at`.
template <typename Table>
constexpr bool CoversBody(const Table& table, std::size_t size) {
    std::size_t next = 0;
    for (const auto& field : table) {
        if (field.at.offset != next || field.at.size == 0) return false;
        next += field.at.size;
    }
    return next == size;
}
