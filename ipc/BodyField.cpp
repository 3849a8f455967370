#include "ipc/BodyField.h"

#include <algorithm>

#include "System/Numbers.h"

void PutField(std::uint8_t* base, const BodyField& field, std::uint64_t value) {
    std::uint8_t* at = base + field.offset;
    PutLe(at, field.size, value);
    if (field.show == EFieldForm::BigEndian) std::reverse(at, at + field.size);
}

void PutReversed(std::uint8_t* base, const BodyField& field, const std::uint8_t* bytes) {
    CopyReversed(base + field.offset, bytes, field.size);
}

std::uint64_t GetField(const std::uint8_t* base, const BodyField& field) {
    const std::uint8_t* at = base + field.offset;
    if (field.show != EFieldForm::BigEndian) return GetLe(at, field.size);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < field.size; ++i) value = value << 8 | at[i];
    return value;
}
