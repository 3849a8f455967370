// The measurements that are stored with the fault of a port.
#include "tests/support/TestRuntime.h"

namespace {

using ErrorMessage = CStationTest;

// Each point gives a number of its own, its neighbours others; the product with the coefficient is cut toward
// zero.
TEST_F(ErrorMessage, EveryMeasurement) {
    Load({{"1,'fault',5,169,'true',0,0"}, {}});
    Printed([this] { runtime.InitSOE(); });
    for (int point = 0; point < 512; ++point) {
        live.SetYc(point, static_cast<std::uint32_t>(10 * point + 7));
        live.SetCoefficient(point, point == 128 + 103 ? -0.5F : 0.1F);
    }
    live.SetSignal(169, 1);  // that of the first port stores none
    live.SetSignal(297, 1);
    Walk();
    EXPECT_THAT(QueryRows(AppFile(kEventFile), "SELECT id, event, timestamp FROM tagErrMsg"),
                testing::ElementsAre(
                    "1|Power_Limit:164 Output_V:229 Output_I:230 Soc:-1158 BMS_Need_V:238 BMS_Need_I:239 "
                    "BMS_Real_V:241 BMS_Real_I:242 Meter_V:298 Meter_I:299|2024-03-05 09:45:00"));
}

}  // namespace
