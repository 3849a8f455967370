// What can be told of the shared memory without making it: attaching through the library would create it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/zorctl/text/HexText.h"

struct SharedSegmentState {
    bool known = false;  // false where only the unit's closed library knows; nothing else is filled then
    bool present = false;
    int key = 0;
    unsigned long id = 0;
    std::size_t size = 0;
    unsigned long attached = 0;  // how many times
    std::int32_t creator = 0;    // process id
    std::uint32_t version = 0;   // of its header
    std::string trouble;         // why the library would not take it, empty when it would
};

// The build picks the implementations that fit the library.
SharedSegmentState LookAtSharedSegment();
// Entries of each table of points; where only the closed library knows, as many as an index can name.
int LiveEntries();

// "shared memory 0x5A53", which stands in front of what is wrong with it.
inline std::string SegmentName(const SharedSegmentState& state) {
    return "shared memory" + (state.known ? ' ' + HexKey(state.key) : "");
}

// True when there are live values to look at.
inline bool SharedSegmentExists() {
    const SharedSegmentState state = LookAtSharedSegment();
    return !state.known || state.present;
}
