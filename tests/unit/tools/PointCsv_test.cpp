// Point tables from CSV and back.
#include "tools/zorctl/PointCsv.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "System/AppFiles.h"
#include "System/Sqlite.h"
#include "points/PointSettings.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/Databases.h"
#include "tests/support/TestRuntime.h"

namespace {

// Each row as its cells joined by '|', then each fault as "line:column: text".
std::vector<std::string> Read(const PointTable& table, const std::string& text) {
    std::vector<PointRow> rows;
    const std::vector<TextTrouble> troubles = ReadPointCsv(table, text, rows);
    std::vector<std::string> lines;
    for (const PointRow& row : rows) {
        lines.emplace_back();
        for (const std::string& cell : row) lines.back() += (lines.back().empty() ? "" : "|") + cell;
    }
    if (!troubles.empty()) lines.clear();
    for (const TextTrouble& trouble : troubles)
        lines.push_back(std::to_string(trouble.at.line) + ':' + std::to_string(trouble.at.column) + ": " +
                        trouble.what);
    return lines;
}

using Lines = std::vector<std::string>;

TEST(PointCsv, Rows) {
    EXPECT_EQ(Lines({"1|Gun|3|134|true|135|0", "2|Module|3|2|true|1027|1"}),
              Read(YxTable(), "name,point,source\nGun,134,\nModule,2,1"));
    // Columns in any order and spelling, words and numbers, quotes, blank lines, both line ends, a mark.
    EXPECT_EQ(Lines({"7|Gun, \"left\"\r\nside|5|134|false|-9|0", "8|T\xC3\xBCr|-1|0|unset|0|1",
                     "9| x |6|5|true|6|0"}),
              Read(YxTable(),
                   "\xEF\xBB\xBFSource, LEVEL ,flag,id,name,point,address\r\n"
                   "0,Fault,FALSE,7,\"Gun, \"\"left\"\"\r\nside\",134,-9\r\n"
                   "\r\n,,,,,,\r\n"
                   "1,-1,0, 8 ,T\xC3\xBCr,0,0\n,6,1,9, x ,5,"));
    EXPECT_EQ(Lines({"101|Voltage|101|0|100|1|0|0|0", "5|I|102|3|150|0.1|4294967040|-1.5|1000"}),
              Read(YcTable(),
                   "id,name,point,group,base,scale,offset,low,high\n,Voltage,101,,,,,,\n"
                   "5,I,102,3,150,.1,4294967040,-1.5,1e3\n"));
    EXPECT_EQ(Lines(), Read(YcTable(), "point,name\n"));
}

TEST(PointCsv, FaultsAndTheirPlaces) {
    const std::string names = "id, name, level, point, flag, address, source";
    EXPECT_EQ(Lines({"1:1: no header line: " + names}), Read(YxTable(), "\n,,\n"));
    EXPECT_EQ(Lines({"1:1: column 'point' is missing", "1:6: 'colour' is no column: " + names,
                     "1:13: column 'Name' is there already"}),
              Read(YxTable(), "name,colour,Name\nGun,1,2\n"));
    // All faults of all lines, in their order, columns in characters.
    EXPECT_EQ(
        Lines({"2:5: level: 'fatal' is no level: normal, warning, fault, emergency, or a number",
               "3:5: level: 'X' is no level: normal, warning, fault, emergency, or a number",
               "3:7: point: '-1' is no whole number from 0 to 65535", "4:1: name: empty", "4:4: point: empty",
               "5:1: 2 fields, the header has 3",
               "5:1: name: an apostrophe, with which no event of the point would be stored",
               "8:1: name: longer than 127 bytes",
               "8:131: point: '65536' is no whole number from 0 to 65535"}),
        Read(YxTable(), "name,level,point\n\xC3\xBC\xC3\xBCx,fatal,1\n\"a\",X,-1\n,5,\nit's,6\n\"a\n\",,1\n" +
                            std::string(128, 'a') + ",,65536"));
    EXPECT_EQ(Lines({"2:4: text behind a closing quote", "3:1: not UTF-8 text",
                     "3:6: point: '0x1' is no whole number from 0 to 65535",
                     "4:2: a quote in the middle of a field", "4:4: a quote that is never closed"}),
              Read(YxTable(), "name,point\n\"a\"b,1\n\xC3(\xFFz,0x1\nc\",\"1"));
    EXPECT_EQ(Lines({"2:9: offset: '16777217' has too many digits: the process would take 16777216",
                     "2:18: scale: '1e39' is no number",
                     "3:5: offset: '-1' is no whole number from 0 to 4294967295",
                     "3:8: scale: 'nan' is no number"}),
              Read(YcTable(), "name,point,offset,scale\nabcd,10,16777217,1e39\nb,1,-1,nan\n"));
}

std::string Text(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

using ZorctlCsv = CEmptyStationTest;

TEST_F(ZorctlCsv, ExportIsWhatInitTakes) {
    const std::string yx =
        "id,name,level,point,flag,address,source\n"
        "1,\"Gun, left\",fault,134,true,135,0\n"
        "2,\"say \"\"on\"\"\",7,0,unset,0,1\n"
        "-3, T\xC3\xBCr ,normal,65535,false,2147483647,0\n";
    const std::string yc =
        "id,name,point,group,base,scale,offset,low,high\n"
        "2,Voltage,2,0,100,0.1,1000,-0.25,1e+20\n";
    WriteText(kScratchDirectory + std::string("yx.csv"), yx);
    WriteText(kScratchDirectory + std::string("yc.csv"), yc);
    const Outcome made =
        Call("init --ports 2 /mnt/nandflash/app --yx /mnt/nandflash/yx.csv --yc /mnt/nandflash/yc.csv");
    ASSERT_EQ(0, made.exit) << made.err;
    EXPECT_EQ(yx, Call("export /mnt/nandflash/app --yx").out);
    EXPECT_EQ(yc, Call("export /mnt/nandflash/app --yc -").out);
    EXPECT_EQ(0,
              Call("export /mnt/nandflash/app --yx /mnt/nandflash/yx2.csv --yc /mnt/nandflash/yc2.csv").exit);
    EXPECT_EQ(yx, Text("/mnt/nandflash/yx2.csv"));
    EXPECT_EQ(yc, Text("/mnt/nandflash/yc2.csv"));

    // The process takes the same: flags by their words, levels by their numbers.
    CSqliteDb database;
    ASSERT_EQ(SQLITE_OK, database.Open(AppFile(kPointSettingFile).c_str(), 0));
    const CSqliteTable table(database, kSelectYxDc);
    const YxPointRecord first = ParseYxRow(table, 0);
    EXPECT_STREQ("Gun, left", first.name);
    EXPECT_EQ(5, first.level);
    EXPECT_EQ(kFlagTrue, first.flag);
    EXPECT_EQ(kFlagUnset, ParseYxRow(table, 1).flag);
    EXPECT_EQ(kFlagFalse, ParseYxRow(table, 2).flag);
}

TEST_F(ZorctlCsv, FaultyFilesWriteNothing) {
    WriteText("/mnt/nandflash/yx.csv", "name,point\na,x\n");
    std::string many = "name,point\n";
    for (int i = 0; i < 30; ++i) many += "a,-1\n";
    WriteText("/mnt/nandflash/yc.csv", many);
    const Outcome refused =
        Call("init --ports 2 /mnt/nandflash/app/new --yx /mnt/nandflash/yx.csv --yc /mnt/nandflash/yc.csv");
    EXPECT_EQ(1, refused.exit);
    EXPECT_EQ(0U, refused.err.find(
                      "zorctl: /mnt/nandflash/yx.csv:2:3: point: 'x' is no whole number from 0 to 65535\n"
                      "zorctl: /mnt/nandflash/yc.csv:2:3: point: "))
        << refused.err;
    EXPECT_NE(std::string::npos, refused.err.find("zorctl: /mnt/nandflash/yc.csv: and 10 faults more\n"));
    EXPECT_FALSE(std::filesystem::exists("/mnt/nandflash/app/new"));
}

// What no CSV would have brought there is exported as the process takes it, or as it stands.
TEST_F(ZorctlCsv, ExportOfForeignSettings) {
    RunSql(AppFile(kPointSettingFile),
           "CREATE TABLE tagPS_YX_DC(a,b,c,d,e,f,g);"
           "INSERT INTO tagPS_YX_DC VALUES(NULL,NULL,'4','x','TRUE',1.5,9)");
    EXPECT_EQ("id,name,level,point,flag,address,source\n0,,warning,x,unset,1.5,9\n",
              Call("export /mnt/nandflash/app --yx").out);
    EXPECT_EQ("zorctl: zorpointsetting.db: no such table: tagPS_YC_DC\n",
              Call("export /mnt/nandflash/app --yc").err);
    RunSql(AppFile(kPointSettingFile), "CREATE TABLE tagPS_YC_DC(a,b); INSERT INTO tagPS_YC_DC VALUES(1,2)");
    EXPECT_EQ("zorctl: zorpointsetting.db: table of yc has 2 columns, 9 expected\n",
              Call("export /mnt/nandflash/app --yc").err);
}

}  // namespace
