#include <gmock/gmock.h>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

const std::string kOpened =
    Line("GetPort", "You have opened a sqlite3 database named zorconfig.db successfully!");

class CConfiguration : public CStationTest {
  protected:
    const std::string path = AppFile(kConfigFile);
    int ports = -1;

    // What GetPort prints; its result goes to `ports`.
    std::string Read() {
        return Masked(Capture([this] { ports = runtime.GetPort(path); }).out);
    }
};
using Configuration = CConfiguration;

TEST_F(Configuration, PortCount) {
    struct Case {
        std::vector<std::string> rows;
        int ports;
        std::vector<std::string> entries;
    };
    const Case cases[] = {
        {{}, 1, {}},
        {{"'chargport_number','2'"}, 2, {"chargport_number=2"}},
        {{"'chargport_number','1'"}, 1, {"chargport_number=1"}},
        {{"'chargport_number','8'"}, 8, {"chargport_number=8"}},
        {{"'chargport_number','9'"}, 1, {"chargport_number=9"}},
        {{"'chargport_number','0'"}, 1, {"chargport_number=0"}},
        {{"'chargport_number','-1'"}, 1, {"chargport_number=-1"}},
        {{"'chargport_number','4294967298'"}, 1, {"chargport_number=4294967298"}},
        {{"'chargport_number',' 4x'"}, 4, {"chargport_number= 4x"}},
        {{"'chargport_number',3"}, 3, {"chargport_number=3"}},
        {{"'chargport_number',''"}, 1, {"chargport_number="}},
        {{"'Chargport_number','2'", "' chargport_number','2'"},
         1,
         {"Chargport_number=2", " chargport_number=2"}},
        {{"'chargport_number','3'", "'chargport_number','9'"},
         1,
         {"chargport_number=3", "chargport_number=9"}},
        {{"'chargport_number','9'", "'chargport_number','3'"},
         3,
         {"chargport_number=9", "chargport_number=3"}},
        {{"'chargport_number','3'", "'chargport_number',NULL", "NULL,'4'"}, 3, {"chargport_number=3"}},
        {{"'chargport_number=5','7'"}, 5, {"chargport_number=5=7"}},
        {{"'rate%n%s','100%'", "'chargport_number','2'"}, 2, {"rate%n%s=100%", "chargport_number=2"}},
    };
    for (const Case& c : cases) {
        CleanStation();
        MakeConfig(c.rows, path);
        std::string expected = kOpened;
        for (const std::string& entry : c.entries) expected += Line("GetPort", entry);
        EXPECT_EQ(expected, Read());
        EXPECT_EQ(c.ports, ports) << testing::PrintToString(c.rows);
        EXPECT_EQ(ports, runtime.m_portCount);
    }
}

TEST_F(Configuration, UnreadableIsOnePort) {
    const std::function<void()> makers[] = {
        [] {},  // missing: SQLite makes an empty database of it
        [this] { WriteText(path, std::string(4096, 'x')); },
        [this] { RunSql(path, "CREATE TABLE other (a)", kConfigKey); },
        [this] { RunSql(path, "CREATE TABLE tagSystem (a, b)", "KQM.7049"); },
        [this] { RunSql(path, "CREATE TABLE tagSystem (a, b)"); },
    };
    for (const std::function<void()>& make : makers) {
        CleanStation();
        make();
        EXPECT_THAT(Read(), AllOf(StartsWith(kOpened + "\033[1;32;40mGetPort.#: read tagSystem error!: "),
                                  EndsWith("\n\033[0m\r\n")));
        EXPECT_EQ(1, ports);
    }
}

TEST_F(Configuration, NotOpenedEndsTheProcess) {
    EXPECT_EXIT(runtime.GetPort("/mnt/nandflash/nowhere/zorconfig.db"), testing::ExitedWithCode(0),
                "^Can't open database: unable to open database file\n$");
}

}  // namespace
