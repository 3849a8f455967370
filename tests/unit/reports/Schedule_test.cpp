// In which tick which port posts what, beside the long session of the real program.
#include "tests/support/TestRuntime.h"

namespace {

class CSchedule : public CStationTest {
  protected:
    CSchedule() { runtime.m_sendflag = 1; }

    // A telemetry point in each group, two status points of which one is a gun signal.
    void Start(int ports, const std::vector<std::string>& groups = {"100"}) {
        PointRows rows{{"1,'a',3,5,'true',5,0", "1,'b',3,134,'true',134,0"}, {}};
        for (const auto& group : groups) rows.yc.push_back("1,'a',101,0," + group + ",1,0,0,0");
        runtime.m_portCount = ports;
        runtime.m_workReportTicks = 50;
        runtime.m_idleReportTicks = 150;
        runtime.m_yxReportTicks = 400;
        tick = 0;
        Load(rows);
    }
    // Lets ticks go by; what is posted in which of them, counted from the start.
    std::string Run(int ticks) {
        std::string seen;
        for (const int end = tick + ticks; tick < end;) {
            ++tick;
            for (const std::string& message : Posted([this] { runtime.SchedulerTick(); }))
                seen += std::to_string(tick) + ' ' + message.substr(0, message.find(' ')) + '\n';
        }
        return seen;
    }
    int tick = 0;
};
using Schedule = CSchedule;

// 18 quick statuses and then the interval, for each charging anew. While reporting is off, every counter
// stands; the forced snapshot is the first port's alone.
TEST_F(Schedule, WhatStopsAndGoesOn) {
    Start(2);
    runtime.Port(1).chargingReports = 16;
    live.SetSignal(177, 1);
    EXPECT_EQ("1 A1_14\n1 A1_14\n101 A1_5\n151 A1_6\n202 A1_5\n253 A1_5\n", Run(300));
    live.SetSignal(177, 0);
    EXPECT_EQ("302 A1_6\n", Run(50));
    live.SetSignal(177, 2);
    EXPECT_EQ("401 A1_13\n401 A1_13\n451 A1_5\n453 A1_6\n552 A1_5\n", Run(250));
    runtime.m_sendflag = 2;  // as good as off
    live.SetGunState(2, 1);
    live.SetSignal(134, 1);
    runtime.m_forceYxReport = 1;
    EXPECT_EQ("", Run(200));
    runtime.m_sendflag = 1;
    EXPECT_EQ(
        "801 A1_13\n801 A1_11\n801 A1_15\n801 A1_14\n804 A1_6\n853 A1_5\n954 A1_5\n955 A1_6\n1002 A1_13\n",
        Run(210));
}

TEST_F(Schedule, KindsAndGroups) {
    live.SetSignal(177, 1);
    for (const auto& [kind, ports, groups, posted] :
         {std::tuple(0, 1, std::vector<std::string>{"100"}, "1 A1_13\n"),
          {kAcCharger, 2, {"100"}, "1 A1_14\n1 A1_14\n"},
          {kDcCharger, 2, {"100", "150"}, "1 A1_13\n51 A1_5\n76 A1_6\n101 A1_5\n"}}) {
        runtime.SetChargerKind(kind);
        Start(ports, groups);
        runtime.m_forceYxReport = 1;
        EXPECT_EQ(posted, Run(110)) << kind;
    }
}

}  // namespace
