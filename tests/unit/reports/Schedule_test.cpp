#include <gmock/gmock.h>

#include "tests/support/TestRuntime.h"

namespace {

using testing::ElementsAre;

class CSchedule : public CStationTest {
  protected:
    CSchedule() { runtime.m_sendflag = 1; }

    void Tick(int count = 1) {
        Capture([&] {
            for (int i = 0; i < count; ++i) runtime.SchedulerTick();
        });
    }
    std::uint32_t Counter(int port) { return runtime.Port(port).snapshotTicks; }
    // Ports whose A1_14 leaves, in order.
    std::vector<int> TakeReports() {
        std::vector<int> ports;
        for (int i = 0; i < 9; ++i) {
            Drain(1);
            for (const Received& received : ReadAll()) ports.push_back(received.frame.at(14));
        }
        return ports;
    }
};
using Schedule = CSchedule;

TEST_F(Schedule, SnapshotEveryInterval601Ticks) {
    Tick(600);
    EXPECT_EQ(600U, Counter(1));
    Tick();
    EXPECT_EQ(0U, Counter(1));
    EXPECT_EQ(0U, Counter(2));
    Tick(601);
    EXPECT_EQ(0U, Counter(2));
    runtime.m_yxReportTicks = 100;
    Tick(100);
    EXPECT_EQ(100U, Counter(1));
    Tick();
    EXPECT_EQ(0U, Counter(1));
}

TEST_F(Schedule, FirstPortTakesTheForcedSnapshot) {
    for (const int kind : {kDcCharger, kAcCharger}) {
        runtime.m_chargerKind = kind;
        runtime.Port(1).snapshotTicks = 10;
        runtime.Port(2).snapshotTicks = 10;
        runtime.m_forceYxReport = 1;
        Tick();
        EXPECT_EQ(0U, Counter(1));
        EXPECT_EQ(11U, Counter(2));
        EXPECT_EQ(0, runtime.m_forceYxReport);
    }
}

TEST_F(Schedule, SwitchedOffEverythingStands) {
    Tick(5);
    EXPECT_THAT(TakeReports(), ElementsAre(1, 2));
    runtime.m_sendflag = 0;
    runtime.m_forceYxReport = 1;
    live.SetSignal(20, 1);
    Tick(5);
    EXPECT_EQ(5U, Counter(1));
    EXPECT_EQ(1, runtime.m_forceYxReport);
    EXPECT_THAT(TakeReports(), ElementsAre());
}

TEST_F(Schedule, PortsByCountAndKind) {
    struct Case {
        int count;
        int kind;
        std::vector<int> ports;
    };
    const Case cases[] = {
        {1, 1, {0}},    {1, 2, {}},     {1, 0, {}},
        {2, 1, {1, 2}}, {2, 2, {1, 2}}, {8, 1, {1, 2, 3, 4, 5, 6, 7, 8}},
        {0, 1, {}},     {-1, 1, {}},
    };
    for (const Case& c : cases) {
        runtime.m_portCount = c.count;
        runtime.m_chargerKind = c.kind;
        for (PortState& port : runtime.m_ports) port = {};
        Tick();
        EXPECT_EQ(c.ports, TakeReports()) << c.count << " ports, kind " << c.kind;
    }
}

}  // namespace
