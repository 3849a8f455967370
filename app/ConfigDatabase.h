// What the process and the bench tools both know of the configuration database.
#pragma once

inline constexpr char kConfigKey[] = ZOR_CONFIG_KEY;
inline constexpr int kConfigKeyLength = 8;
static_assert(sizeof kConfigKey == kConfigKeyLength + 1, "the key has exactly 8 characters");

inline constexpr char kSelectSystem[] = "SELECT * FROM tagSystem";
inline constexpr char kPortCountEntry[] = "chargport_number";
