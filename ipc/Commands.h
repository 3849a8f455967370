// The commands of zor_main: where their values lie, for who reads them and who sends them.
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

// Body of a history request: day, month, year within the century and century are BCD, the hour is binary.
inline constexpr std::size_t kRequestDay = 0;
inline constexpr std::size_t kRequestMonth = 1;
inline constexpr std::size_t kRequestYear = 2;
inline constexpr std::size_t kRequestCentury = 3;
inline constexpr std::size_t kRequestHour = 4;
inline constexpr std::size_t kRequestSize = 5;
inline constexpr int kWholeDay = 24;  // as hour: all hours of the day

// Body of an acknowledgement: the time as A1_16 carries it, then the result. The hour is binary, the
// rest of the date BCD.
inline constexpr std::size_t kAckHour = 2;
inline constexpr std::size_t kAckDay = 3;
inline constexpr std::size_t kAckMonth = 4;
inline constexpr std::size_t kAckYear = 5;
inline constexpr std::size_t kAckCentury = 6;
inline constexpr std::size_t kAckResult = 7;
inline constexpr std::size_t kAckSize = 8;
inline constexpr std::uint8_t kAckAccepted = 0;
inline constexpr std::uint8_t kAckRejected = 1;
