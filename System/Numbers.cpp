#include "System/Numbers.h"

#include <algorithm>
#include <cmath>
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

std::int64_t ParseInt64(const char* text) {
    return text == nullptr ? 0 : std::strtoll(text, nullptr, 10);
}

float ParseFloat(const char* text) {
    return text == nullptr ? 0.0F : static_cast<float>(std::strtod(text, nullptr));
}

std::uint32_t TruncateToUInt32(float value) {
    constexpr float kEnd = 4294967296.0F;  // 2^32, the first value that does not fit
    if (!(value > 0.0F)) return 0;         // NaN too
    return value >= kEnd ? std::numeric_limits<std::uint32_t>::max() : static_cast<std::uint32_t>(value);
}

std::int32_t TruncateToInt32(float value) {
    constexpr float kEnd = 2147483648.0F;  // 2^31
    if (std::isnan(value)) return 0;
    if (value >= kEnd) return std::numeric_limits<std::int32_t>::max();
    return value < -kEnd ? std::numeric_limits<std::int32_t>::min() : static_cast<std::int32_t>(value);
}

std::size_t PackNibbles(std::uint8_t* to, std::size_t capacity, const char* text) {
    std::size_t bytes = 0;
    for (std::size_t i = 0; text[i] != '\0' && i / 2 < capacity; ++i) {
        unsigned nibble = 0;
        if (text[i] >= '0' && text[i] <= '9') nibble = static_cast<unsigned>(text[i] - '0');
        if (text[i] >= 'a' && text[i] <= 'f') nibble = static_cast<unsigned>(text[i] - 'a' + 10);
        if (i % 2 == 0) {
            to[bytes++] = static_cast<std::uint8_t>(nibble << 4);
        } else {
            to[bytes - 1] = static_cast<std::uint8_t>(to[bytes - 1] | nibble);
        }
    }
    return bytes;
}
