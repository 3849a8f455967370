// What a start reads, and leaves behind in the process.
#include "app/StartUp.h"

#include <malloc.h>

#include "app/ConfigDatabase.h"
#include "tests/support/TestRuntime.h"

namespace {

using StartUpEffects = CStationTest;

// The last entry of its very name counts, and only 1 to 8 is one. Count; key of the file; what is made in it;
// the lines.
TEST_F(StartUpEffects, PortCount) {
    constexpr char kTable[] = "CREATE TABLE tagSystem(name, value); INSERT INTO tagSystem VALUES";
    for (const auto& row : Table(R"(
8 | right    | ('chargport_number',8)                         | chargport_number=8
3 | right    | ('chargport_number',3),('chargport_number',NULL),(NULL,'4'),('Chargport_number',2) | chargport_number=3;Chargport_number=2
4 | right    | ('chargport_number',' 4x')                     | chargport_number= 4x
1 | right    | ('chargport_number','9')                       | chargport_number=9
1 | right    | ('chargport_number',3),('chargport_number',0)  | chargport_number=3;chargport_number=0
5 | right    | ('chargport_number=5','7'),('rate%n%s','100%') | chargport_number=5=7;rate%n%s=100%
1 | right    | CREATE TABLE other(a)  | read tagSystem error!: no such table: tagSystem
1 | another  | CREATE TABLE other(a)  | read tagSystem error!: file is encrypted or is not a database)")) {
        std::remove(AppFile(kConfigFile).c_str());
        RunSql(AppFile(kConfigFile), (row[2][0] == '(' ? kTable : "") + row[2],
               row[1] == "right" ? kConfigKey : "another.");
        const std::string said =
            Printed([&] { EXPECT_EQ(std::stoi(row[0]), runtime.GetPort(AppFile(kConfigFile))); });
        EXPECT_EQ("You have opened a sqlite3 database named zorconfig.db successfully!;" + row[3],
                  Texts(said, "GetPort"));
    }
}

TEST_F(StartUpEffects, HeapAndHour) {
    MakeConfig(1);
    SetClock("2024-03-05 09:00:00");
    Printed([this] { StartUp(runtime); });
#ifndef ZOR_ADDRESS_SANITIZER  // which has an allocator of its own
    // A large block that is freed would otherwise have the next one taken from the heap, for good.
    constexpr std::size_t kLarge = 12 << 20;  // more than the tests before this one can have left free
    std::free(std::malloc(2 * kLarge));
    const std::size_t before = mallinfo2().hblks;
    void* block = std::malloc(kLarge);
    EXPECT_EQ(before + 1, mallinfo2().hblks);
    std::free(block);
#endif
    // No record is due for the hour in which it happens.
    Printed([this] { runtime.SchedulerTick(); });
    EXPECT_EQ(0, QueryNumber(AppFile(kHistoryFile), "SELECT count(*) FROM tagYC"));
}

}  // namespace
