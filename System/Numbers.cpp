#include "System/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

std::int32_t ParseInt32(const char* text) {
    if (text == nullptr) return 0;
    constexpr long long kLow = std::numeric_limits<std::int32_t>::min();
    constexpr long long kHigh = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::strtoll(text, nullptr, 10), kLow, kHigh));
}

std::uint32_t ParseUInt32(const char* text) {
    if (text == nullptr) return 0;
    while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    if (*text < '0' || *text > '9') return 0;
    const unsigned long long magnitude = std::strtoull(text, nullptr, 10);
    // Out of range gives the largest value whatever the sign.
    if (magnitude > std::numeric_limits<std::uint32_t>::max())
        return std::numeric_limits<std::uint32_t>::max();
    const auto value = static_cast<std::uint32_t>(magnitude);
    return negative ? 0U - value : value;
}

void PutLe(std::uint8_t* at, std::size_t width, std::uint64_t value) {
    for (std::size_t i = 0; i < width; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

std::uint64_t GetLe(const std::uint8_t* at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value |= static_cast<std::uint64_t>(at[i]) << (8 * i);
    return value;
}

void CopyReversed(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    std::reverse_copy(from, from + count, to);
}
