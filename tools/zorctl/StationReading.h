// A station's databases for reading: nothing is created, and no lock is held between statements.
#pragma once

#include <string>

class CSqliteDb;

// Opens `file` of `directory`. False with a line on standard error where that cannot be had.
bool OpenToRead(CSqliteDb& database, const std::string& directory, const char* file);
