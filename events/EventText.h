// Texts of events.
#pragma once

#include <cstdint>
#include <string>

class CShmCTRL;

// Severity of the events of a status point; any other number is normal.
inline constexpr std::int32_t kNormal = 3;
inline constexpr std::int32_t kWarning = 4;
inline constexpr std::int32_t kFault = 5;
inline constexpr std::int32_t kEmergency = 6;

// "[Fault]" and the like; any level without a text of its own is normal.
const char* LevelText(std::int32_t level);

// Level text, name and transition, into `text`. `name` ends at its NUL.
void WriteEventText(std::string& text, std::int32_t level, const char* name, bool rising);

// Ten charging measurements of the port whose points begin at `base`, read live. Longer than any ten numbers
// get.
struct ErrorMessage {
    char text[256];
};
ErrorMessage ReadErrorMessage(CShmCTRL& shm, int base);
