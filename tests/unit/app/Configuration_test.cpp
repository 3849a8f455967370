// The port count: the last entry of its very name counts, and only 1 to 8 is one.
#include <regex>

#include "app/ConfigDatabase.h"
#include "tests/support/TestRuntime.h"

namespace {

using Configuration = CStationTest;

// Makes the file with `sql` and expects a count; what is printed is given without the operation.
void Expect(CTestRuntime& runtime, int ports, const char* key, const std::string& sql,
            const std::string& lines) {
    CleanStation();
    if (!sql.empty()) RunSql(AppFile(kConfigFile), sql, key);
    const Captured captured = Capture([&] { EXPECT_EQ(ports, runtime.GetPort(AppFile(kConfigFile))); });
    EXPECT_EQ("You have opened a sqlite3 database named zorconfig.db successfully!\n" + lines,
              std::regex_replace(Plain(captured.out), std::regex("GetPort: "), ""));
    EXPECT_EQ(ports, runtime.m_portCount);
}

TEST_F(Configuration, PortCount) {
    for (const auto& row : Table(R"(
1 | ('x',0)                                           | x=0;
8 | ('chargport_number',8)                            | chargport_number=8;
3 | ('chargport_number',3),('chargport_number',NULL),(NULL,'4'),(' chargport_number',2) | chargport_number=3; chargport_number=2;
3 | ('chargport_number',3),('Chargport_number',2)     | chargport_number=3;Chargport_number=2;
4 | ('chargport_number',' 4x')                        | chargport_number= 4x;
1 | ('chargport_number','-1')                         | chargport_number=-1;
1 | ('chargport_number','9')                          | chargport_number=9;
1 | ('chargport_number','4294967298')                 | chargport_number=4294967298;
1 | ('chargport_number','3'),('chargport_number','0') | chargport_number=3;chargport_number=0;
5 | ('chargport_number=5','7'),('rate%n%s','100%')    | chargport_number=5=7;rate%n%s=100%;)"))
        Expect(runtime, std::stoi(row[0]), kConfigKey,
               "CREATE TABLE tagSystem(name, value); INSERT INTO tagSystem VALUES" + row[1],
               std::regex_replace(row[2], std::regex(";"), "\n"));
}

TEST_F(Configuration, FilesThatGiveNone) {
    const std::string kNoTable = "read tagSystem error!: no such table: tagSystem\\n\n";
    const std::string kNoDatabase = "read tagSystem error!: file is encrypted or is not a database\\n\n";
    Expect(runtime, 1, nullptr, "", kNoTable);
    Expect(runtime, 1, kConfigKey, "CREATE TABLE other(a)", kNoTable);
    Expect(runtime, 1, "KQM.7049", "CREATE TABLE tagSystem(a, b)", kNoDatabase);
    Expect(runtime, 1, nullptr, "CREATE TABLE tagSystem(a, b)", kNoDatabase);
}

}  // namespace
