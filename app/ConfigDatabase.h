// What the process and the bench tools both know of the configuration database.
#pragma once

class CSqliteTable;
class CStringList;

inline constexpr char kConfigKey[] = ZOR_CONFIG_KEY;
inline constexpr int kConfigKeyLength = 8;
static_assert(sizeof kConfigKey == kConfigKeyLength + 1, "the key has exactly 8 characters");

inline constexpr char kSelectSystem[] = "SELECT * FROM tagSystem";
inline constexpr char kPortCountEntry[] = "chargport_number";

// Adds every row of `table` that has both a name and a value, as "name=value".
void CollectEntries(const CSqliteTable& table, CStringList& entries);
// The port count that such entries give: the last one that names it counts; 1 where none does, or it is none.
int PortCountIn(const CStringList& entries);
