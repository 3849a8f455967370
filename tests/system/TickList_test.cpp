// Every message of a run of 4,000 ticks, as a list. Builds for different machines must agree on it: with the
// environment variable ZOR_TICK_LIST, a file name, the list is also written there, for scripts/compare-armhf.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>
#include <set>

#include "System/AppFiles.h"
#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/Messages.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kTicks = 4000;
constexpr int kTicksToTheHour = 1800;
constexpr int kFirstYc = 101;
constexpr int kLastYc = 227;

// What happens on port 1; port 2 stays idle.
struct Step {
    int tick;
    int signal;
    std::uint8_t state;
    std::uint8_t gunState;
};
constexpr Step kSession[] = {
    {20, kSignalGunConnected, 1, 2}, {30, kSignalGunLocked, 1, 2},      {40, kSignalControl, 1, 2},
    {60, kSignalCharging, 1, 3},     {900, kSignalPortAlarm, 1, 3},     {950, kSignalPortAlarm, 0, 3},
    {2500, kSignalPortFault, 1, 3},  {2600, kSignalPortFault, 0, 3},    {3000, kSignalCharging, 0, 2},
    {3010, kSignalGunLocked, 0, 2},  {3020, kSignalGunConnected, 0, 1}, {3050, kSignalGunInHolder, 1, 1},
};

// Telemetry with factors that no binary fraction holds.
void MakePointSettings() {
    std::string sql =
        "CREATE TABLE tagPS_YX_DC (id, name, level, point, flag, address, source);"
        "CREATE TABLE tagPS_YC_DC (id, name, point, groupcode, groupbase, scale, offset, low, high);";
    std::set<int> signals{kSignalStationFault, kSignalEmergencyStop, kSignalGunInHolder};
    for (const Step& step : kSession) signals.insert(step.signal);
    for (const int point : signals) {
        const std::string number = std::to_string(point);
        sql +=
            "INSERT INTO tagPS_YX_DC VALUES (" + number + ",'s',3," + number + ",'true'," + number + "+1,0);";
    }
    std::vector<int> points(kLastYc - kFirstYc + 1);
    std::iota(points.begin(), points.end(), kFirstYc);
    points.insert(points.begin(), {kYcIdleVoltage, kYcIdleCurrent});
    for (const int point : points) {
        const std::string number = std::to_string(point);
        sql += "INSERT INTO tagPS_YC_DC VALUES (" + number + ",'t'," + number + ",0,100,0.37*(" + number +
               "%9+1)," + number + "%4*1000,0,0);";
    }
    RunSql(AppFile(kPointSettingFile), sql);
}

// Before anything attaches to the station.
class CCleanStation : public testing::Test {
  protected:
    CCleanStation() { CleanStation(); }
    ~CCleanStation() override { CleanStation(); }
};

class CTickList : public CCleanStation {
  protected:
    CTickList() {
        MakeConfig(2);
        MakePointSettings();
        process.SetTime(CStationProcess::kStart + 15 * 60 - kTicksToTheHour / 10);
    }

    // Numbers of all magnitudes, so that conversions round and saturate.
    std::uint32_t Number() {
        const auto shift = random() % 32;
        return static_cast<std::uint32_t>(random()) >> shift;
    }
    void MoveLiveValues(int tick) {
        for (const Step& step : kSession) {
            if (step.tick != tick) continue;
            live.SetSignal(step.signal, step.state);
            live.SetGunState(1, step.gunState);
        }
        const auto point = static_cast<int>(random() % (kLastYc + kPointsPerPort));
        live.SetYc(point, Number());
        live.SetDd(point % (2 * kCountersPerPort), Number());
    }
    void TakeMessages(int tick) {
        for (const Received& message : ReadAll()) {
            const auto code = static_cast<std::uint16_t>(message.frame.at(kFrameCode) << 8 |
                                                         message.frame.at(kFrameCode + 1));
            const MessageName* known = FindMessage(code);
            ASSERT_NE(nullptr, known) << code;
            names.insert(known->name);
            list += std::to_string(tick) + " " + known->name + " " + ToHex(message.frame) + "\n";
        }
    }

    CLiveValues live;
    CStationProcess process;
    std::mt19937 random{4};
    std::set<std::string> names;
    std::string list;
};
using TickList = CTickList;

TEST_F(TickList, OnePortChargesAndOneIdles) {
    live.SetEquipment({0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x50, 0x51});
    Settings settings;
    settings.a1_5 = 5;
    SendFrame(SettingsFrame(settings));
    for (int tick = 0; tick < kTicks && !HasFatalFailure(); ++tick) {
        MoveLiveValues(tick);
        process.RunPasses(1);
        TakeMessages(tick);
    }
    EXPECT_THAT(names, testing::ElementsAre("A1_11", "A1_13", "A1_14", "A1_15", "A1_16", "A1_5", "A1_6"));
    if (const char* path = std::getenv("ZOR_TICK_LIST"); path != nullptr) WriteText(path, list);
}

}  // namespace
