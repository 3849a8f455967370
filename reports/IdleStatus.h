// A1_6, the idle status: the one JSON message.
#pragma once

#include <cstdint>

#include "reports/ChargingStatus.h"

class CShmCTRL;

inline constexpr std::size_t kIdleCapacity = 512;  // longest document that is posted, bytes

// The document of `port` as unformatted JSON text, from live values and the points of one group; to be
// released with free(). Null when there is no memory for it.
char* BuildIdleDocument(CShmCTRL& shm, const GroupPlaces& places, int port, std::uint32_t sequence);

// True for the key of a member of the document.
bool IsIdleMember(const char* key);
