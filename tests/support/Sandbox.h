// A place of its own for the tests of one process: private System V objects and a private application
// directory.
#pragma once

#include <functional>

// Calls `run` and returns its result. Around it the process has namespaces of its own with an empty /mnt.
// Where the system refuses them and the user is root, and nothing of a station is there yet, the host's own
// /mnt/nandflash, queue and segment are used, one test process at a time, and removed afterwards; what a
// crash leaves the next one removes. The environment variable ZOR_TEST_NO_NAMESPACES forces this way. Where
// neither can be had, says in one line what is missing and returns 1.
int RunInSandbox(const std::function<int()>& run);

// The same for a process whose main() is not its own: the namespaces stay for the rest of its life. False
// where the system refuses them.
bool EnterSandbox();

// Empties what a test may have left: the application directory (made where it is missing), the queue, the
// segment.
void CleanStation();

// Base of a fixture: clean before and behind everything that the fixture holds.
struct CleanBothEnds {
    CleanBothEnds() { CleanStation(); }
    ~CleanBothEnds() { CleanStation(); }
    CleanBothEnds(const CleanBothEnds&) = delete;
    CleanBothEnds& operator=(const CleanBothEnds&) = delete;
};

// Scratch space beside the application directory, ending in '/'.
inline constexpr char kScratchDirectory[] = "/mnt/nandflash/";
