#include "ZorSqlite.h"

int sqlite3_key_v1(sqlite3* database, const void* key, int length) {
    return sqlite3_key(database, key, length);
}
