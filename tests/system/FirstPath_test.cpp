// From the start of the process to its first messages.
#include <gmock/gmock.h>

#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {
class CFirstPath : public testing::Test {
  protected:
    CFirstPath() { CleanStation(); }
    CStationProcess station;
};

TEST_F(CFirstPath, Starts) {
    MakeConfig(2);
    station.RunPasses(6);
    EXPECT_THAT(station.TakeOutput(), testing::HasSubstr("with 2 port"));
}
}  // namespace
