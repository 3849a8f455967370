// The report-settings command of zor_main: where its values lie in the frame, for who reads it and who sends
// it.
#pragma once

#include <cstddef>
#include <cstdint>

// Inbound command codes.
inline constexpr std::uint16_t kCommandSettings = 34086;
inline constexpr std::uint16_t kCommandHistoryRequest = 34092;
inline constexpr std::uint16_t kCommandHistoryAck = 34095;

// An inbound count above this is refused.
inline constexpr std::uint16_t kMaxInboundCount = 1022;

// Frame offsets; every value is an unsigned 16-bit little-endian number.
inline constexpr std::size_t kSettingsEnable = 4;     // kEnableReporting switches reporting on, all else off
inline constexpr std::size_t kSettingsA1_3 = 6;       // seconds, AC charger
inline constexpr std::size_t kSettingsA1_4 = 8;       // seconds, AC charger
inline constexpr std::size_t kSettingsA1_5 = 10;      // seconds, DC charger
inline constexpr std::size_t kSettingsA1_6 = 12;      // seconds, DC charger
inline constexpr std::size_t kSettingsSnapshot = 14;  // seconds, A1_12 or A1_13
inline constexpr std::size_t kSettingsLongInterval = 18;  // minutes
inline constexpr std::size_t kSettingsFrameLength = 20;
inline constexpr std::uint16_t kEnableReporting = 1000;

// History commands: one argument byte, then the data.
inline constexpr std::size_t kHistoryArgument = 4;
inline constexpr std::size_t kHistoryData = 5;
inline constexpr std::size_t kHistoryAreaSize = 128;  // what a handler gets, zero-filled behind the data
