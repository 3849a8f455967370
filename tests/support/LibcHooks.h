// System calls that fail on demand. A later demand takes the place of one that is
// not met yet.
#pragma once

#include <string>

// The next call of msgget, msgsnd or msgrcv, whichever comes first, fails with this errno.
void FailNextQueueCall(int error);

// The next so many reads of a database fail that go beyond its start, which opening it reads.
void FailReads(int count);

// The next call that gives up a lock on a file fails, without doing so.
void FailNextUnlock();

// The next so many `stat` calls on `file` fail.
void FailStats(const std::string& file, int count);
