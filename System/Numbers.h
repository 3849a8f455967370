// Number conversions that give the same result on 32-bit and 64-bit machines.
#pragma once

#include <cstddef>
#include <cstdint>

// Base-10 `strtol` and `strtoul` as a 32-bit unit computes them: leading white space and a sign are accepted,
// reading stops at the first non-digit, out of range saturates. A minus sign negates an unsigned result
// modulo 2^32. A null text gives 0.
std::int32_t ParseInt32(const char* text);
std::uint32_t ParseUInt32(const char* text);
// Base-10 `strtoll`; a null text gives 0.
std::int64_t ParseInt64(const char* text);

// `strtod`, rounded to 32 bits; a null text gives 0.
float ParseFloat(const char* text);

// Truncates toward zero and saturates at both ends; NaN gives 0.
std::uint32_t TruncateToUInt32(float value);
std::int32_t TruncateToInt32(float value);

// Packed BCD of the last two decimal digits: tens in the high nibble.
constexpr std::uint8_t ToBcd(unsigned value) {
    return static_cast<std::uint8_t>((value / 10 % 10) << 4 | value % 10);
}

// Packs two characters per byte: the one at an even position is the high nibble, '0' to '9' and 'a' to 'f'
// count, any other character (upper-case letters included) is 0. An odd last character leaves the low nibble
// 0. Writes at most `capacity` bytes and returns how many it wrote.
std::size_t PackNibbles(std::uint8_t* to, std::size_t capacity, const char* text);

// Little-endian bytes <-> number; `width` 0 to 8. PutLe writes the low `width` bytes of `value`.
inline void PutLe(std::uint8_t* at, std::size_t width, std::uint64_t value) {
    for (std::size_t i = 0; i < width; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}
inline std::uint64_t GetLe(const std::uint8_t* at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value |= std::uint64_t{at[i]} << (8 * i);
    return value;
}

// Copies `count` bytes, last one first. The ranges must not overlap.
inline void CopyReversed(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) to[i] = from[count - 1 - i];
}
