// The real program through 4,000 passes of a charging session on port 1 while port 2 stays idle and other
// values move. Builds for different machines must agree on every message: with the environment variable
// ZOR_TICK_LIST, a file name, they are written there, for scripts/compare-armhf.

#include <cstdlib>
#include <map>
#include <random>
#include <regex>

#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kTicks = 4000;

// What the acquisition side does before a tick.
constexpr struct {
    int tick;
    int signal;
    std::uint8_t state;
    std::uint8_t gunState;
} kSession[] = {
    {1, kSignalGunInHolder, 1, 0}, {100, kSignalGunInHolder, 0, 1},   {100, kSignalGunConnected, 1, 1},
    {200, kSignalCharging, 1, 2},  {3300, kSignalPortFault, 1, 2},    {3400, kSignalPortFault, 0, 2},
    {3500, kSignalCharging, 0, 1}, {3700, kSignalGunConnected, 0, 0}, {3700, kSignalGunInHolder, 1, 0},
};

struct Reports : testing::Test, CleanBothEnds {
    // Telemetry with factors that no binary fraction holds, but for the first five points; status points with
    // their numbers + 1 as addresses.
    Reports() {
        MakeConfig(2);
        PointRows rows;
        for (const int point : {20, 99, 134, 135, 177}) {
            const std::string number = std::to_string(point);
            rows.yx.push_back("1,'signal',3," + number + ",'true'," + number + "+1,0");
        }
        for (const int point : {kYcIdleVoltage, kYcIdleCurrent, 101, 102, 103})
            rows.yc.push_back("1,'value'," + std::to_string(point) + ",0,100,1,0,0,0");
        for (int point = 104; point <= 227; ++point)
            rows.yc.push_back("1,'value'," + std::to_string(point) + ",0,100,0.37*" +
                              std::to_string(point % 9 + 1) + ',' + std::to_string(point % 4 * 1000) +
                              ",0,0");
        MakePoints(rows);
    }
    void Act(int tick) {
        for (const auto& step : kSession) {
            if (step.tick != tick) continue;
            live.SetSignal(step.signal, step.state);
            live.SetGunState(1, step.gunState);
        }
        if (tick == 1000) live.SetYc(102, 981);
        // Numbers of all magnitudes.
        const auto point = 104 + static_cast<int>(random() % 251);
        live.SetYc(point, static_cast<std::uint32_t>(random()) >> random() % 32);
    }

    CLiveValues live;
    CStationProcess process;
    std::mt19937 random{4};
};

TEST_F(Reports, TickList) {
    live.SetEquipment({0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x50, 0x51});
    live.SetSignal(kPointsPerPort + kSignalGunInHolder, 1);
    live.SetYc(2, 750);
    live.SetYc(3, 12345);
    live.SetYc(101, 7512);
    live.SetYc(102, 980);
    live.SetDd(32, 98765);
    Act(1);
    process.SetTime(CStationProcess::kStart + 15 * 60 - kTicks / 20);  // the hour comes half way
    SendFrame(SettingsFrame());
    process.RunPasses(6);  // tick 1 is the pass after the one that reads the settings
    std::string list;
    for (int tick = 1; tick <= kTicks && !HasFatalFailure(); ++tick) {
        Act(tick);
        process.RunPasses(1);
        for (const std::string& message : ReadNamed()) list += std::to_string(tick) + " " + message + "\n";
    }
    if (const char* path = std::getenv("ZOR_TICK_LIST"); path != nullptr) WriteText(path, list);

    // One message leaves per tick, in the order of posting.
    std::map<std::string, std::string> ticks;
    const std::regex message("(\\d+) (A1_\\d+) (?:(?:\\w\\w ){8}0|.*\"portNo\":)(\\d).*\n");
    for (std::sregex_iterator at(list.begin(), list.end(), message), end; at != end; ++at)
        ticks[(*at)[2].str() + '/' + (*at)[3].str()] += ' ' + (*at)[1].str();
    const std::map<std::string, std::string> kTicksOf = {
        {"A1_11/1", " 2 100 200 3300 3400 3500 3700"},
        {"A1_11/2", " 5"},
        {"A1_13/1", " 1 603 1204 1805 2406 3007 3608"},
        {"A1_13/2", " 602 1203 1804 2405 3006 3607"},
        {"A1_14/1", " 4 102 201 3301 3401 3501 3702"},
        {"A1_14/2", " 7"},
        {"A1_15/1", " 3 101 3701"},
        {"A1_15/2", " 6"},
        {"A1_16/1", " 1995"},
        {"A1_16/2", " 1996"},
        {"A1_5/1",
         " 300 401 502 604 704 805 906 1007 1108 1209 1310 1411 1512 1613 1714 1815 1916 2017 2618 3219"},
        {"A1_6/2", " 601 1202 1803 2404 3005 3606"}};
    EXPECT_EQ(kTicksOf, ticks);
    const std::string head = " 51 50 49 48 47 46 45 44 01 ";
    for (const std::string& line :
         {"\n101 A1_15" + head + "02 00 d0 07 00 01 00 d1 07 00 00 00 04\n",
          "\n906 A1_5" + head + "01 00 00 00 05 00 58 1d d4 03 ",
          "\n1007 A1_5" + head + "01 00 00 00 05 00 58 1d d5 03 ",
          "\n3608 A1_13" + head + "05 00 00 00 15 00 00 00 64 00 00 00 87 00 00 01 88 00 00 00 b2 00 00 00\n",
          std::string("\n601 A1_6 {\"time\":\"1709603860\",\"sn\":0,"),
          std::string("\"outputV\":75,\"outputC\":123.45,\"meterVal\":\"9.876500\"}\n")})
        EXPECT_THAT(list, testing::HasSubstr(line));
    EXPECT_EQ("", process.Errors());
}

}  // namespace
