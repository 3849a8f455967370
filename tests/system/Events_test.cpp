// Events of the real program: hundreds at once.
#include <algorithm>

#include "System/AppFiles.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kManyPoints = 612;

class CEvents : public testing::Test, CCleanBothEnds {
  protected:
    const std::string file = AppFile(kEventFile);
    CLiveValues live;
    CStationProcess process;
};
using Events = CEvents;

TEST_F(Events, BurstOfOneTick) {
    std::vector<std::string> rows = YxRows(kManyPoints);
    std::reverse(rows.begin(), rows.end());  // list order is not that of the numbers
    MakePoints({rows, {}});
    process.RunPasses(1);
    for (int point = 0; point < kManyPoints; ++point) live.SetSignal(point, 1);
    process.RunPasses(1);
    std::vector<std::string> expected = {"1|SOE database init!|0"};
    for (int point = kManyPoints - 1; point >= 0; --point)
        expected.push_back(std::to_string(expected.size() + 1) + "|[Fault]Point " + std::to_string(point) +
                           " 0 -> 1|1");
    EXPECT_EQ(expected, QueryRows(file, "SELECT id,event,value FROM tagSOE ORDER BY id"));
    EXPECT_LE(1U, process.Syncs());
    EXPECT_GE(5U, process.Syncs());
    EXPECT_EQ("3", QueryRows(file, "SELECT count(*) FROM tagErrMsg")[0]);  // points 297, 425 and 553
    process.RunPasses(1);
    EXPECT_EQ(0U, process.FileCalls());
    EXPECT_EQ("", process.Errors());
}

}  // namespace
