// Where on a screen the parts of a station's picture stand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zorctl/watch/StationPicture.h"

enum class ELook : std::uint8_t { Plain, Heading, Fresh };

struct Span {
    std::string text;
    ELook look = ELook::Plain;
};

using ScreenLine = std::vector<Span>;

// At most `lines` lines of exactly `columns` columns. What does not fit is left out: of ports and headings
// the last, of events and messages the oldest, of points those that have not changed for longest.
std::vector<ScreenLine> LayOut(const StationPicture& picture, int lines, int columns);
