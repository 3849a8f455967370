// In which tick which port posts what.
#include <map>

#include "tests/support/TestRuntime.h"

namespace {

class CSchedule : public CStationTest {
  protected:
    CSchedule() { runtime.m_sendflag = 1; }

    // One telemetry point in each of so many groups, two status points of which one is a gun signal.
    void Start(int ports, int groups = 1) {
        PointRows rows{{"1,'a',3,5,'true',5,0", "1,'b',3,134,'true',134,0"}, {}};
        for (int group = 0; group < groups; ++group)
            rows.yc.push_back("1,'a',101,0," + std::to_string(100 + 50 * group) + ",1," +
                              std::to_string(1 + group) + ",0,0");
        runtime.m_portCount = ports;
        runtime.m_ports = {};
        m_tick = 0;
        Load(rows);
    }
    // Lets ticks go by; a line per message and port says in which, counted from the start.
    std::string Run(int ticks) {
        std::map<std::string, std::string> seen;
        for (const int end = m_tick + ticks; m_tick < end;) {
            ++m_tick;
            for (const std::string& message : Posted([this] { runtime.SchedulerTick(); })) {
                const std::size_t name = message.find(' ');
                const std::size_t json = message.find("portNo\":");
                const char port = message.at(json != std::string::npos ? json + 8 : name + 26);
                seen[message.substr(0, name) + '/' + port] += ' ' + std::to_string(m_tick);
            }
        }
        std::string lines;
        for (const auto& [message, when] : seen) lines += message + ':' + when + '\n';
        return lines;
    }
    void SetIntervals(std::uint32_t work, std::uint32_t idle, std::uint32_t snapshot) {
        runtime.m_workReportTicks = work;
        runtime.m_idleReportTicks = idle;
        runtime.m_yxReportTicks = snapshot;
    }

  private:
    int m_tick = 0;
};
using Schedule = CSchedule;

// 18 quick statuses and then the interval. Counters of the other reports go their own way.
TEST_F(Schedule, ChargingThatEndsAndBeginsAnew) {
    Start(1);
    SetIntervals(50, 400, 1000);
    EXPECT_EQ("A1_14/0: 1\nA1_6/0: 401 802\n", Run(999));
    live.SetSignal(177, 1);
    EXPECT_EQ("A1_13/0: 1001\nA1_5/0: 1100 1201 1302 1403\n", Run(500));
    live.SetSignal(177, 0);
    EXPECT_EQ("A1_6/0: 1900\n", Run(450));
    live.SetSignal(177, 2);
    EXPECT_EQ(
        "A1_13/0: 2002 3003\nA1_5/0: 2050 2151 2252 2353 2454 2555 2656 2757 2858 2959 3060 3161 3262 3363 "
        "3464 3565 3666 3767 3818 3869 3920 3971\n",
        Run(2050));
    live.SetSignal(177, 0);
    EXPECT_EQ("A1_13/0: 4004\nA1_6/0: 4400 4801\n", Run(1001));
}

// While it is, every counter stands; the forced snapshot is the first port's alone.
TEST_F(Schedule, ReportingIsOffForAWhile) {
    Start(2);
    SetIntervals(1800, 150, 100);
    live.SetSignal(177, 1);
    EXPECT_EQ("A1_14/1: 1\nA1_14/2: 1\n", Run(9));
    live.SetSignal(134, 1);
    EXPECT_EQ("A1_11/1: 10\nA1_15/1: 10\n", Run(41));
    runtime.m_sendflag = 0;
    EXPECT_EQ("", Run(9));
    live.SetSignal(177, 0);
    live.SetSignal(134, 0);
    EXPECT_EQ("", Run(40));
    live.SetGunState(2, 1);
    live.SetSignal(134, 1);
    live.SetSignal(177, 1);
    runtime.m_forceYxReport = 1;
    EXPECT_EQ("", Run(51));
    runtime.m_sendflag = 1;
    EXPECT_EQ("A1_13/1: 151\nA1_14/2: 151\n", Run(49));
    live.SetSignal(5, 1);
    EXPECT_EQ("A1_11/1: 200\nA1_11/2: 200\nA1_13/2: 201\nA1_5/1: 201\n", Run(10));
    runtime.m_sendflag = 2;  // as good as off
    EXPECT_EQ("", Run(100));
    runtime.m_sendflag = 1;
    EXPECT_EQ("A1_13/1: 352 453\nA1_13/2: 402 503\nA1_5/1: 402 503\nA1_6/2: 351 502\n", Run(200));
}

TEST_F(Schedule, OtherKindsAndStationsWithoutAPort) {
    const std::tuple<std::int32_t, int, const char*> kCases[] = {
        {0, 2, "A1_13/1: 601\nA1_13/2: 601\nA1_14/1: 1\nA1_14/2: 1\n"},
        {0, 1, "A1_13/0: 601\n"},
        {kAcCharger, 1, ""},
        {kAcCharger, 2, "A1_14/1: 1\nA1_14/2: 1\n"},
        {kDcCharger, 0, ""}};
    SetIntervals(1800, 100, 600);
    for (const auto& [kind, ports, lines] : kCases) {
        runtime.SetChargerKind(kind);
        Start(ports);
        EXPECT_EQ(lines, Run(700)) << kind << ' ' << ports;
    }
}

// Counters go twice as fast, a report holds what its group has.
TEST_F(Schedule, OncePerGroupAndTick) {
    Start(2, 2);
    runtime.m_idleReportTicks = 10;
    live.SetSignal(177, 1);
    EXPECT_EQ("A1_14/1: 1\nA1_14/2: 1\nA1_6/2: 6 11 17 22 28 33 39 44 50\n", Run(50));
    EXPECT_EQ("00 00 00 00 02 00 01 ", Posted([this] { runtime.SchedulerTick(); }).at(0).substr(32, 21));
    EXPECT_EQ("A1_6/2: 54 60 65 71 76 82 87 93 98\n", Run(49));
    EXPECT_EQ("00 00 00 00 02 00 02 ", Posted([this] { runtime.SchedulerTick(); }).at(0).substr(32, 21));
}

}  // namespace
