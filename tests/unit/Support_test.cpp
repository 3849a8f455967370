#include "tests/support/TestRuntime.h"

namespace {

using Support = CEmptyStationTest;

// SQLite asks the operating system for the time inside its own library.
TEST_F(Support, FakeClockServesSqlite) {
    FakeClock::Set(1709603100);
    usleep(1500000);
    const std::string path = AppFile("clock.db");
    EXPECT_EQ(1709603101, time(nullptr));
    EXPECT_EQ(std::vector<std::string>{"2024-03-05 01:45:01|2024-03-05 09:45:01"},
              QueryRows(path, "SELECT datetime('now'), datetime('now', 'localtime')"));
}

}  // namespace
