// Whether there is shared memory to look at, without making it: attaching through the library would create
// it.
#pragma once

// True when the station's shared memory exists. The build picks the implementation that fits the library.
bool SharedSegmentExists();
