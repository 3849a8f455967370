// SQLite with database keying. A unit's SQLite has `sqlite3_key_v1` of its own; elsewhere KeyV1.cpp supplies
// it.
#pragma once

#ifndef SQLITE_HAS_CODEC
#define SQLITE_HAS_CODEC 1  // makes the header of a keying SQLite declare its key functions
#endif
#include <sqlite3.h>

extern "C" {
// Keys the just opened `database` with `length` bytes at `key`. SQLITE_OK also when the key is wrong: that
// shows at the first read.
int sqlite3_key_v1(sqlite3* database, const void* key, int length);
}
