// The port count: the last entry of its very name counts, and only 1 to 8 is one.
#include <filesystem>

#include "app/ConfigDatabase.h"
#include "tests/support/TestRuntime.h"

namespace {

using Configuration = CStationTest;

TEST_F(Configuration, PortCount) {
    const struct {
        const char* rows;  // name and value of each
        const char* lines;
        int ports;
    } kCases[] = {
        {"('x',NULL)", "", 1},
        {"('chargport_number',8)", "chargport_number=8", 8},
        {"('chargport_number',3),('chargport_number',NULL),(NULL,'4'),(' chargport_number',2),"
         "('Chargport_number',2)",
         "chargport_number=3| chargport_number=2|Chargport_number=2", 3},
        {"('chargport_number',' 4x')", "chargport_number= 4x", 4},
        {"('chargport_number','-1')", "chargport_number=-1", 1},
        {"('chargport_number','9')", "chargport_number=9", 1},
        {"('chargport_number','4294967298')", "chargport_number=4294967298", 1},
        {"('chargport_number','3'),('chargport_number','0')", "chargport_number=3|chargport_number=0", 1},
        {"('chargport_number=5','7'),('rate%n%s','100%')", "chargport_number=5=7|rate%n%s=100%", 5},
    };
    for (const auto& c : kCases) {
        CleanStation();
        RunSql(AppFile(kConfigFile),
               "CREATE TABLE tagSystem(name, value); INSERT INTO tagSystem VALUES" +
                   std::string(c.rows),
               kConfigKey);
        std::string said = "GetPort: You have opened a sqlite3 database named zorconfig.db successfully!\n";
        std::istringstream lines(c.lines);
        for (std::string line; std::getline(lines, line, '|');) said += "GetPort: " + line + '\n';
        EXPECT_EQ(said, Said([&] { EXPECT_EQ(c.ports, runtime.GetPort(AppFile(kConfigFile))); }));
        EXPECT_EQ(c.ports, runtime.m_portCount);
    }
}

TEST_F(Configuration, FilesThatGiveNone) {
    const std::string kNoTable = "no such table: tagSystem";
    const std::string kNoDatabase = "file is encrypted or is not a database";
    const auto with = [](const char* sql, const char* key) {
        return [=] { RunSql(AppFile(kConfigFile), sql, key); };
    };
    const std::pair<std::function<void()>, std::string> kCases[] = {
        {[] {}, kNoTable},
        {with("CREATE TABLE other(a)", kConfigKey), kNoTable},
        {with("CREATE TABLE tagSystem(a, b)", "KQM.7049"), kNoDatabase},
        {with("CREATE TABLE tagSystem(a, b)", nullptr), kNoDatabase},
        {[] { WriteText(AppFile(kConfigFile), std::string(4096, 'x')); }, kNoDatabase},
    };
    for (const auto& [make, why] : kCases) {
        CleanStation();
        make();
        EXPECT_EQ(
            "GetPort: You have opened a sqlite3 database named zorconfig.db successfully!\n"
            "GetPort: read tagSystem error!: " +
                why + "\\n\n",
            Said([this] { EXPECT_EQ(1, runtime.GetPort(AppFile(kConfigFile))); }));
    }
}

}  // namespace
