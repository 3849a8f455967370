// From the raw value of a telemetry point to what a report carries. Every product and every sum is rounded to
// a 32-bit float before the next step; the field's width cuts the result.
#pragma once

#include <cstdint>

#include "System/Numbers.h"
#include "points/PointRecords.h"

// Product as unsigned, offset added as integer.
inline std::uint32_t ConvertU(const YcPointRecord& point) {
    return TruncateToUInt32(static_cast<float>(point.currentRaw) * point.scale) + point.offset;
}

// Product as signed, offset added as integer.
inline std::uint32_t ConvertS(const YcPointRecord& point) {
    const std::int32_t product = TruncateToInt32(static_cast<float>(point.currentRaw) * point.scale);
    return static_cast<std::uint32_t>(product) + point.offset;
}

// Offset added in float.
inline std::uint32_t ConvertA(const YcPointRecord& point) {
    const float product = static_cast<float>(point.currentRaw) * point.scale;
    return TruncateToUInt32(static_cast<float>(point.offset) + product);
}

// As A, the raw value read as signed.
inline std::uint32_t ConvertAS(const YcPointRecord& point) {
    const float product = static_cast<float>(static_cast<std::int32_t>(point.currentRaw)) * point.scale;
    return TruncateToUInt32(static_cast<float>(point.offset) + product);
}

// Product taken from the offset in float.
inline std::uint32_t ConvertN(const YcPointRecord& point) {
    const float product = static_cast<float>(point.currentRaw) * point.scale;
    return TruncateToUInt32(static_cast<float>(point.offset) - product);
}

using YcConversion = std::uint32_t (*)(const YcPointRecord& point);
