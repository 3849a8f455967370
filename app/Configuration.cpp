// The port count, from the keyed configuration database.
#include "System/DiagLine.h"
#include "System/Sqlite.h"
#include "System/StringToolkit.h"
#include "app/ConfigDatabase.h"
#include "app/RuntimeData.h"

void CollectEntries(const CSqliteTable& table, CStringList& entries) {
    for (int row = 0; row < table.Rows(); ++row) {
        const char* name = table.Cell(row, 0);
        const char* value = table.Cell(row, 1);
        if (name == nullptr || value == nullptr) continue;
        CString entry(name);
        entry += "=";
        entry += value;
        entries.Add(entry);
    }
}

int PortCountIn(const CStringList& entries) {
    std::uint32_t count = 0;
    CStringList pieces;
    for (int i = 0; i < entries.Count(); ++i) {
        pieces.Clear();
        CStringList::Split(entries.At(i), "=", pieces);
        if (pieces.At(0) == kPortCountEntry) count = pieces.At(1).ToUnsigned();
    }
    return count >= 1 && count <= kMaxPorts ? static_cast<int>(count) : 1;
}

int CRuntimeData::GetPort(const std::string& path) {
    CSqliteDb database;
    database.OpenOrExit(path.c_str());
    database.Key(kConfigKey, kConfigKeyLength);
    CDiagLine(__func__).Print("You have opened a sqlite3 database named zorconfig.db successfully!");
    const CSqliteTable table(database, kSelectSystem);
    if (!table.Ok()) CDiagLine(__func__).Print("read tagSystem error!: %s\n", table.Error());

    CStringList entries;
    CollectEntries(table, entries);
    for (int i = 0; i < entries.Count(); ++i) CDiagLine(__func__).Print("%s", entries.At(i).c_str());
    m_portCount = PortCountIn(entries);
    return m_portCount;
}
