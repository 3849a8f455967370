#include "points/RTDB.h"

#include <cstdio>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "app/RuntimeData.h"
#include "points/PointSettings.h"

int CRTDB::Load(const std::string& directory, std::int32_t chargerKind) {
    const CAppPath path(kPointSettingFile);
    PrintPlain("%s", path.c_str());
    CSqliteDb database;
    database.OpenOrExit(path.c_str());
    CDiagLine(__func__).Print("You have opened a sqlite3 database named zorpointsetting.db successfully!");
    const bool ac = chargerKind == kAcCharger;
    CDiagLine(__func__).Print("%s", ac ? "database:AC" : "database:DC");
    const CSqliteTable table(database, ac ? kSelectYcAc : kSelectYcDc);
    constexpr int kNumberColumn = 0;
    constexpr int kDescriptionColumn = 1;
    for (int row = 0; row < table.Rows(); ++row) {
        const char* description = table.Cell(row, kDescriptionColumn);
        m_labelSets.push_back(std::make_unique<CLabelSet>(ParseInt32(table.Cell(row, kNumberColumn)),
                                                          description != nullptr ? description : "",
                                                          directory));
    }
    CDiagLine(__func__).Print("init YC realdatabase scussessful!");
    return 0;
}
