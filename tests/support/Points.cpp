#include "tests/support/Points.h"

#include "System/AppFiles.h"
#include "tests/support/Databases.h"

void MakePointSettings(const std::vector<YxRow>& yx, const std::vector<YcRow>& yc) {
    const auto text = [](auto number) { return std::to_string(number); };
    std::string sql =
        "BEGIN; CREATE TABLE tagPS_YX_DC (id, name, level, number, flag, address, source);"
        "CREATE TABLE tagPS_YC_DC (id, name, number, code, base, a, b, c, d);";
    for (const YxRow& row : yx)
        sql += "INSERT INTO tagPS_YX_DC VALUES (1, 'signal', 3, " + text(row.number) + ", 'true', " +
               text(row.address) + ", " + text(row.source) + ");";
    for (const YcRow& row : yc)
        sql += "INSERT INTO tagPS_YC_DC VALUES (1, 'value', " + text(row.number) + ", 0, " +
               text(row.groupBase) + ", " + text(row.scale) + ", " + text(row.offset) + ", 0, 0);";
    RunSql(AppFile(kPointSettingFile), sql + "COMMIT");
}
