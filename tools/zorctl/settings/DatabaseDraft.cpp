#include "tools/zorctl/settings/DatabaseDraft.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

CDatabaseDraft::CDatabaseDraft(const std::string& path, const char* key, int keyLength)
    : m_path(path), m_folder(path + ".XXXXXX") {
    if (mkdtemp(m_folder.data()) == nullptr) {
        m_folder.clear();
        Fail(std::strerror(errno));
        return;
    }
    if (m_database.Open(Draft().c_str(), kBusyAtStartUpMs) != SQLITE_OK) {
        Fail("cannot be written");
        return;
    }
    if (key != nullptr) m_database.Key(key, keyLength);
    Run("BEGIN");
}

CDatabaseDraft::~CDatabaseDraft() {
    m_database.Close();
    if (m_folder.empty()) return;
    std::remove(Draft().c_str());
    std::remove(m_folder.c_str());
}

void CDatabaseDraft::Run(const char* sql) {
    if (!m_trouble.empty()) return;
    const CSqliteTable done(m_database, sql);
    if (!done.Ok()) Fail(done.Error());
}

bool CDatabaseDraft::PutInPlace() {
    Run("COMMIT");
    m_database.Close();
    if (!m_trouble.empty()) return false;
    // A journal of the old file would be played back into the new one.
    for (const char* beside : {"-journal", "-wal", "-shm"}) std::remove((m_path + beside).c_str());
    if (std::rename(Draft().c_str(), m_path.c_str()) != 0) Fail(std::strerror(errno));
    return m_trouble.empty();
}

void CDatabaseDraft::Fail(const char* what) {
    if (m_trouble.empty()) m_trouble = m_path + ": " + what;
}

CRowWriter::CRowWriter(CDatabaseDraft& draft, const char* sql) : m_draft(draft) {
    if (!m_draft.m_trouble.empty()) return;
    if (sqlite3_prepare_v2(m_draft.m_database.Handle(), sql, -1, &m_statement, nullptr) != SQLITE_OK)
        m_draft.Fail(sqlite3_errmsg(m_draft.m_database.Handle()));
}

CRowWriter::~CRowWriter() {
    sqlite3_finalize(m_statement);
}

CRowWriter& CRowWriter::Text(const char* value) {
    sqlite3_bind_text(m_statement, ++m_column, value, -1, SQLITE_TRANSIENT);
    return *this;
}

void CRowWriter::End() {
    m_column = 0;
    if (!m_draft.m_trouble.empty()) return;
    if (sqlite3_step(m_statement) != SQLITE_DONE) m_draft.Fail(sqlite3_errmsg(m_draft.m_database.Handle()));
    sqlite3_reset(m_statement);
}
