#include "System/BusyWait.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

void CBusyWait::Serve(sqlite3* database) {
    sqlite3_busy_handler(database, Wait, this);
}

int CBusyWait::Wait(void* self, int tries) {
    // Most locks are short: look again soon at first.
    constexpr int kPausesMs[] = {1, 2, 5, 10, 15, 20, 25, 25, 25, 50};
    auto& wait = *static_cast<CBusyWait*>(self);
    const auto at = std::min(static_cast<std::size_t>(tries), std::size(kPausesMs) - 1);
    const int pause = std::min(kPausesMs[at], wait.m_limitMs - wait.m_waitedMs);
    if (pause <= 0 || wait.m_refused) return 0;
    wait.m_waitedMs += pause;
    // Not through SQLite, which sleeps whole seconds where it was built without this call.
    usleep(static_cast<useconds_t>(pause) * 1000);
    return 1;
}
