// The real program through 4,000 passes of a charging session: every message, with its pass and its bytes.
#include <gmock/gmock.h>

#include <functional>
#include <map>

#include "tests/support/Points.h"
#include "tests/support/ReportTest.h"
#include "tests/support/StationProcess.h"

namespace {

const std::string kEquipment = "51 50 49 48 47 46 45 44 ";
constexpr int kPassesBefore = 6;  // until the settings command is read; tick 1 is the pass after it

// Values of points 20, 99, 134, 135 and 177 of a port.
std::string Snapshot(int port, const std::array<int, 5>& values) {
    const char* const addresses[] = {"15 00 00 0", "64 00 00 0", "87 00 00 0", "88 00 00 0", "b2 00 00 0"};
    std::string text = "A1_13 " + kEquipment + "0" + std::to_string(port) + " 05 00 00 00";
    for (std::size_t i = 0; i < values.size(); ++i) text += ' ' + (addresses[i] + std::to_string(values[i]));
    return text;
}

std::string Changes(const std::string& portAndFaults, const std::string& entries) {
    return "A1_11 " + kEquipment + portAndFaults + ' ' + entries;
}

std::string Guns(const std::string& portAndEntries) {
    return "A1_15 " + kEquipment + portAndEntries + " 04";
}

std::string PortState(int port, int code) {
    return "A1_14 " + kEquipment + "0" + std::to_string(port) + " 01 00 e8 03 00 0" + std::to_string(code) +
           " 00 00 01";
}

std::string Charging(const char* soc) {
    return "A1_5 " + kEquipment + "01 01 00 00 00 05 00 58 1d d4 03 00 00 00 00 00 " + soc + " 00 " +
           ToHex(Bytes(207));
}

std::string Idle(int tick, int sequence) {
    const auto time = CStationProcess::kStart + (tick + kPassesBefore - 1) / 10;
    const std::string text =
        R"({"time":")" + std::to_string(time) + R"(","sn":)" + std::to_string(sequence) +
        R"(,"type":"dcNonWork","ver":"1.0.0.20230601","equipNo":"4445464748495051","portNo":2,"connFlag":0,)"
        R"("gunHdrFlag":1,"lockFlag":0,"ctrFlag":0,"workFlag":"0002","outputV":75,"outputC":123.45,)"
        R"("meterVal":"9.876500"})";
    return "A1_6 " + ToHex(text.data(), text.size());
}

class CReports : public testing::Test, CCleanBothEnds {
  protected:
    CReports() {
        MakeConfig(2);
        MakePointSettings({{20, 21}, {99, 100}, {134, 135}, {135, 136}, {177, 178}},
                          {{2, 0.1}, {3}, {101}, {102}, {103}});
        live.SetEquipment({0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x50, 0x51});
        live.SetYc(2, 7500);
        live.SetYc(3, 12345);
        live.SetDd(32, 98765);
        live.SetSignal(135, 1);
        live.SetSignal(263, 1);
    }

    // What the acquisition side does before a tick.
    void Act(int tick) {
        switch (tick) {
            case 100:  // plugged
                live.SetSignal(135, 0);
                live.SetSignal(134, 1);
                return live.SetGunState(1, 1);
            case 200:
                live.SetYc(101, 7512);
                live.SetYc(102, 980);
                live.SetYc(103, 20);
                live.SetSignal(177, 1);
                return live.SetGunState(1, 2);
            case 1000:
                return live.SetYc(103, 48);
            case 2600:
                return live.SetYc(103, 80);
            case 3300:
                return live.SetSignal(99, 1);
            case 3400:
                return live.SetSignal(99, 0);
            case 3500:
                live.SetSignal(177, 0);
                return live.SetGunState(1, 1);
            case 3700:  // unplugged
                live.SetSignal(134, 0);
                live.SetSignal(135, 1);
                return live.SetGunState(1, 0);
            default:
                return;
        }
    }

    CLiveValues live;
    CStationProcess process;
};
using Reports = CReports;

TEST_F(Reports, ChargingSessionTickByTick) {
    constexpr std::array<int, 5> kResting{0, 0, 0, 1, 0};
    constexpr std::array<int, 5> kCharging{0, 0, 1, 0, 1};
    // By the tick in which a message leaves: one per tick, in the order of posting.
    std::map<int, std::string> expected{
        {1, Snapshot(1, kResting)},
        {2, Changes("01 00 00", "01 88 00 01")},
        {3, Guns("01 01 00 d1 07 00 01 00")},
        {4, PortState(1, 2)},
        {5, Changes("02 00 00", "01 88 00 01")},
        {6, Guns("02 01 00 d1 07 00 01 00")},
        {7, PortState(2, 2)},
        {100, Changes("01 00 00", "02 87 00 01 88 00 00")},
        {101, Guns("01 02 00 d0 07 00 01 00 d1 07 00 00 00")},
        {102, PortState(1, 3)},
        {200, Changes("01 00 00", "01 b2 00 01")},
        {201, PortState(1, 5)},
        {3300, Changes("01 01 00", "01 64 00 01")},
        {3301, PortState(1, 1)},
        {3400, Changes("01 00 00", "01 64 00 00")},
        {3401, PortState(1, 5)},
        {3500, Changes("01 00 00", "01 b2 00 00")},
        {3501, PortState(1, 3)},
        {3700, Changes("01 00 00", "02 87 00 00 88 00 01")},
        {3701, Guns("01 02 00 d0 07 00 00 00 d1 07 00 01 00")},
        {3702, PortState(1, 2)},
    };
    int sequence = 0;
    for (const int tick : {601, 1202, 1803, 2404, 3005, 3606}) {
        expected[tick] = Idle(tick, sequence++);
        expected[tick + 1] = Snapshot(2, kResting);
        expected[tick + 2] = Snapshot(1, tick < 3500 ? kCharging : std::array<int, 5>{0, 0, 1, 0, 0});
    }
    // That of tick 603 waits for a snapshot.
    for (const int tick : {300, 401, 502, 604, 704, 805, 906}) expected[tick] = Charging("14");
    for (const int tick : {1007, 1108, 1209, 1310, 1411, 1512, 1613, 1714, 1815, 1916, 2017})
        expected[tick] = Charging("30");
    for (const int tick : {2618, 3219}) expected[tick] = Charging("50");

    ASSERT_TRUE(SendFrame(SettingsFrame()));
    process.RunPasses(kPassesBefore);
    std::map<int, std::string> seen;
    for (int tick = 1; tick <= 4000; ++tick) {
        Act(tick);
        process.RunPasses(1);
        for (const std::string& message : Named(ReadAll())) seen[tick] += message;
    }
    for (int tick = 1; tick <= 4000; ++tick) EXPECT_EQ(expected[tick], seen[tick]) << "tick " << tick;
    EXPECT_EQ("", process.Errors());
}

}  // namespace
