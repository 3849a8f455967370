// A database file in the making: nobody sees it before it is whole.
#pragma once

#include <sqlite3.h>

#include <string>

#include "System/Sqlite.h"

// Works on a file in a folder of its own beside the real one, in one transaction: nobody else can have put
// anything there. Remembers the first failure; every later step then does nothing.
class CDatabaseDraft {
  public:
    // `key` of `keyLength` bytes, or null for a database without one.
    explicit CDatabaseDraft(const std::string& path, const char* key = nullptr, int keyLength = 0);
    // A draft that was not put in place is removed.
    ~CDatabaseDraft();
    CDatabaseDraft(const CDatabaseDraft&) = delete;
    CDatabaseDraft& operator=(const CDatabaseDraft&) = delete;

    void Run(const char* sql);
    // Gives the file its real name, replacing one that bears it, also a link, which is not followed. False
    // after any failure; Trouble() says which.
    bool PutInPlace();
    const std::string& Trouble() const { return m_trouble; }

  private:
    friend class CRowWriter;
    void Fail(const char* what);
    std::string Draft() const { return m_folder + "/draft"; }

    std::string m_path;
    std::string m_folder;  // empty where it could not be made
    CSqliteDb m_database;
    std::string m_trouble;
};

// Fills a table of a draft row by row: one Text per column, in order, then End;
// SQLite makes numbers of them where the column holds numbers.
class CRowWriter {
  public:
    // `sql` is an INSERT with one '?' per column.
    CRowWriter(CDatabaseDraft& draft, const char* sql);
    ~CRowWriter();
    CRowWriter(const CRowWriter&) = delete;
    CRowWriter& operator=(const CRowWriter&) = delete;

    CRowWriter& Text(const char* value);
    void End();

  private:
    CDatabaseDraft& m_draft;
    sqlite3_stmt* m_statement = nullptr;
    int m_column = 0;
};
