#include "reports/PortState.h"

#include <gmock/gmock.h>

#include "tests/support/TestRuntime.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CPortState : public CStationTest {
  protected:
    CPortState() { runtime.m_sendflag = 1; }

    // State codes that two calls, one per port, post; -1 for none.
    std::vector<int> Codes() {
        Capture([this] {
            runtime.Send_DC_A1_14(1);
            runtime.Send_DC_A1_14(2);
            Drain(2);
        });
        std::vector<int> codes{-1, -1};
        for (const Received& received : ReadAll())
            codes.at(received.frame.at(14) - 1U) = received.frame.at(20);
        return codes;
    }
};
using PortStateReport = CPortState;

TEST(ChargingState, Code) {
    const std::uint8_t byGunState[] = {2, 3, 5, 6, 1};
    for (std::uint8_t gun = 0; gun < 5; ++gun) {
        EXPECT_EQ(byGunState[gun], ChargingStateCode(false, gun, 9)) << gun;
        EXPECT_EQ(1, ChargingStateCode(true, gun, 9)) << gun;
    }
    for (const std::uint8_t unknown : std::initializer_list<std::uint8_t>{5, 7, 255}) {
        EXPECT_EQ(1, ChargingStateCode(false, unknown, 1));
        EXPECT_EQ(0, ChargingStateCode(false, unknown, 0));
        EXPECT_EQ(1, ChargingStateCode(true, unknown, 0));
    }
}

TEST_F(PortStateReport, FrameAndDump) {
    live.SetGunState(2, 1);
    const Captured said = Capture([this] { runtime.Send_DC_A1_14(2); });
    Drain(1);
    EXPECT_THAT(ReadFrames(),
                ElementsAre("16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 03 00 00 01"));
    EXPECT_EQ(Line("Send_DC_A1_14", "msgcode: 34518 data:") + "02 01 00 e8 03 00 03 00 00 \n",
              Masked(said.out));
}

TEST_F(PortStateReport, PostsChangesOnly) {
    EXPECT_THAT(Codes(), ElementsAre(2, 2));
    EXPECT_THAT(Codes(), ElementsAre(-1, -1));
    live.SetGunState(1, 7);  // unknown
    EXPECT_THAT(Codes(), ElementsAre(1, -1));
    live.SetGunState(1, 1);
    live.SetSignal(227, 1);  // fault of port 2
    EXPECT_THAT(Codes(), ElementsAre(3, 1));
    live.SetSignal(227, 0);
    live.SetSignal(99, 2);  // fault of port 1; any state but 0 is on
    EXPECT_THAT(Codes(), ElementsAre(1, 2));
    for (const int everyPort : {0, 20}) {
        live.SetSignal(99, 0);
        EXPECT_THAT(Codes(), ElementsAre(3, everyPort == 0 ? -1 : 2));
        live.SetSignal(everyPort, 1);
        EXPECT_THAT(Codes(), ElementsAre(1, 1));
        live.SetSignal(everyPort, 0);
    }
    runtime.m_sendflag = 0;
    EXPECT_THAT(Codes(), ElementsAre(-1, -1));
    runtime.m_sendflag = 1;  // codes posted before are remembered
    live.SetSignal(20, 1);
    EXPECT_THAT(Codes(), ElementsAre(-1, -1));
}

}  // namespace
