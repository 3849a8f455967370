// Thousands of ticks against plain tables of what leaves when.
#include <gmock/gmock.h>

#include <functional>
#include <map>

#include "points/PointSettings.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/Points.h"
#include "tests/support/ReportTest.h"

namespace {

using Acts = std::map<int, std::function<void()>>;         // by tick, before it
using Expected = std::map<std::string, std::vector<int>>;  // ticks by "message/port"

class CScheduleRuns : public CReportTest {
  protected:
    CScheduleRuns() {
        AddGroup(100, 1);
        YxPointRecord record{};
        for (const int number : {5, 134}) {
            record.pointNumber = record.address = number;
            AppendYxPoint(runtime.m_yxPoints, record, runtime.m_portCount);
        }
        runtime.SelectReportedPoints();
    }

    // A group that holds point 101 with this offset.
    void AddGroup(std::int32_t base, std::uint32_t offset) {
        YcPointRecord record{};
        record.pointNumber = 101;
        record.groupBase = base;
        record.offset = offset;
        AppendYcPoint(runtime.m_ycGroups, record, 1);
    }
    std::function<void()> Set(int signal, std::uint8_t state) {
        return [=] { live.SetSignal(signal, state); };
    }
    std::function<void()> Reporting(std::int32_t flag) {
        return [=] { runtime.m_sendflag = flag; };
    }

    void Run(int ticks, const Acts& acts, const Expected& expected) {
        Expected seen;
        Capture([&] {
            for (int tick = 1; tick <= ticks; ++tick) {
                if (const auto act = acts.find(tick); act != acts.end()) act->second();
                runtime.SchedulerTick();
                for (const std::string& message : Take()) seen[NameAndPort(message)].push_back(tick);
            }
        });
        EXPECT_EQ(expected, seen);
    }

  private:
    static std::string NameAndPort(const std::string& message) {
        const std::string name = message.substr(0, message.find(' '));
        if (name != "A1_6") return name + '/' + message.at(name.size() + 26);
        const std::string key = ToHex("portNo\":", 8) + " 3";  // and the digit
        return name + '/' + message.at(message.find(key) + key.size());
    }
};
using ScheduleRuns = CScheduleRuns;

TEST_F(ScheduleRuns, OnePortChargesTheOtherIdles) {
    Run(4000, {{1, Set(177, 1)}},
        {{"A1_5/1",
          {101, 202, 303, 404, 505, 606, 707, 808, 909, 1010, 1111, 1212, 1313, 1414, 1515, 1616, 1717, 1818,
           3619}},
         {"A1_6/2", {1801, 3602}},
         {"A1_13/1", {601, 1202, 1803, 2404, 3005, 3606}},
         {"A1_13/2", {601, 1202, 1803, 2404, 3005, 3606}},
         {"A1_14/1", {1}},
         {"A1_14/2", {1}}});
}

TEST_F(ScheduleRuns, ChargingBeginsAnew) {
    runtime.m_portCount = 1;
    runtime.m_idleReportTicks = 400;
    runtime.m_workReportTicks = 50;
    runtime.m_yxReportTicks = 1000;
    Run(5000, {{1000, Set(177, 1)}, {1500, Set(177, 0)}, {1950, Set(177, 2)}, {4000, Set(177, 0)}},
        {{"A1_5/0", {1100, 1201, 1302, 1403, 2050, 2151, 2252, 2353, 2454, 2555, 2656, 2757, 2858,
                     2959, 3060, 3161, 3262, 3363, 3464, 3565, 3666, 3767, 3818, 3869, 3920, 3971}},
         {"A1_6/0", {401, 802, 1900, 4400, 4801}},
         {"A1_13/0", {1001, 2002, 3003, 4004}},
         {"A1_14/0", {1}}});
}

TEST_F(ScheduleRuns, SwitchedOffCountersStand) {
    runtime.m_yxReportTicks = 100;
    runtime.m_idleReportTicks = 150;
    Run(500,
        {{1, Set(177, 1)},
         {10, Set(134, 1)},
         {51, Reporting(0)},
         {60, Set(177, 0)},
         {70, Set(134, 0)},
         {100, [this] { live.SetGunState(2, 1); }},
         {120, Set(134, 1)},
         {130, Set(177, 1)},
         {151, Reporting(1)},
         {200, Set(5, 1)},
         {210, Reporting(2)},
         {310, Reporting(1)}},
        {{"A1_5/1", {201, 402}},
         {"A1_6/2", {351}},
         {"A1_11/1", {10, 200}},
         {"A1_11/2", {200}},
         {"A1_13/1", {201, 402}},
         {"A1_13/2", {201, 402}},
         {"A1_14/1", {1}},
         {"A1_14/2", {1, 151}},
         {"A1_15/1", {10}}});
}

TEST_F(ScheduleRuns, ForcedSnapshotIsTheFirstPortsAlone) {
    Run(1300, {{50, [this] { runtime.m_forceYxReport = 1; }}},
        {{"A1_13/1", {50, 651, 1252}}, {"A1_13/2", {601, 1202}}, {"A1_14/1", {1}}, {"A1_14/2", {1}}});
}

TEST_F(ScheduleRuns, OtherChargerKinds) {
    const struct {
        int kind;
        int ports;
        Expected expected;
    } kCases[] = {
        {0, 2, {{"A1_13/1", {601}}, {"A1_13/2", {601}}, {"A1_14/1", {1}}, {"A1_14/2", {1}}}},
        {0, 1, {{"A1_13/0", {601}}}},
        {kAcCharger, 2, {{"A1_14/1", {1}}, {"A1_14/2", {1}}}},
        {kAcCharger, 1, {}},
    };
    runtime.m_idleReportTicks = 100;
    for (const auto& c : kCases) {
        runtime.m_chargerKind = c.kind;
        runtime.m_portCount = c.ports;
        for (PortState& port : runtime.m_ports) port = {};
        Run(700, {{1, Set(177, 1)}}, c.expected);
    }
}

// Twice per tick the builders run; a report holds what the group has whose turn it is.
TEST_F(ScheduleRuns, GroupsShareTheCounters) {
    AddGroup(150, 2);
    runtime.m_idleReportTicks = 10;
    live.SetSignal(177, 1);
    std::vector<std::string> outputVoltages;
    std::vector<int> idleTicks;
    Capture([&] {
        for (int tick = 1; tick <= 160; ++tick) {
            runtime.SchedulerTick();
            for (const std::string& message : Take()) {
                if (message.compare(0, 5, "A1_5 ") == 0)
                    outputVoltages.push_back(std::to_string(tick) + ": " + message.substr(5 + 15 * 3, 5));
                if (message.compare(0, 5, "A1_6 ") == 0 && tick < 40) idleTicks.push_back(tick);
            }
        }
    });
    EXPECT_THAT(outputVoltages, testing::ElementsAre("51: 01 00", "101: 02 00", "152: 01 00"));
    EXPECT_THAT(idleTicks, testing::ElementsAre(6, 11, 17, 22, 28, 33, 39));
}

TEST_F(ScheduleRuns, RefreshTakesRawValueAndArea) {
    std::uint8_t area[kEntryAreaSize];
    for (std::size_t i = 0; i < sizeof area; ++i) area[i] = static_cast<std::uint8_t>(i + 1);
    std::memcpy(static_cast<std::uint8_t*>(live.getYc(101)) + kEntryArea, area, sizeof area);
    YcPointRecord outside{};
    outside.pointNumber = -1;
    outside.currentRaw = 7;
    outside.name[0] = 'x';
    std::list<YcPointRecord>& points = runtime.m_ycGroups.front().points;
    points.push_front(outside);
    const YcPointRecord& point = points.back();
    live.SetYc(101, 5);
    runtime.m_sendflag = 0;
    runtime.SchedulerTick();
    EXPECT_EQ(0U, point.currentRaw);
    runtime.m_sendflag = 1;
    Capture([this] { runtime.SchedulerTick(); });
    live.SetYc(101, 0xFFFFFFFF);
    runtime.SchedulerTick();
    EXPECT_EQ(5U, point.previousRaw);
    EXPECT_EQ(0xFFFFFFFFU, point.currentRaw);
    EXPECT_EQ(0, std::memcmp(area, point.name, sizeof area));
    EXPECT_EQ(0U, points.front().currentRaw);
    EXPECT_EQ('\0', points.front().name[0]);
}

using QuietTick = CReportTest;

TEST_F(QuietTick, AllocatesNothing) {
    std::vector<YxRow> yx;
    std::vector<YcRow> yc;
    yx.reserve(612);
    yc.reserve(612);
    for (int number = 0; number < 612; ++number) {
        yx.push_back({number, number + 1, number % 7 == 0 ? kSourceYx2 : kSourceYx});
        yc.push_back({number});
    }
    MakePointSettings(yx, yc);
    runtime.m_portCount = 8;
    Capture([this] {
        runtime.InitPointSettingYC();
        runtime.InitPointSettingYX();
        runtime.InitSOE();
        for (int i = 0; i < 10; ++i) runtime.SchedulerTick();
    });
    ASSERT_LE(8U * 512, runtime.m_yxPoints.size());
    ASSERT_LE(8U * 511, runtime.m_ycGroups.front().points.size());
    EXPECT_EQ(8U, Take().size());  // the port states
    const std::uint64_t before = Allocations();
    for (int i = 0; i < 500; ++i) runtime.SchedulerTick();
    EXPECT_EQ(before, Allocations());
    Capture([this] {  // snapshots fall due: the counter does count
        for (int i = 0; i < 100; ++i) runtime.SchedulerTick();
    });
    EXPECT_LT(before, Allocations());
}

}  // namespace
