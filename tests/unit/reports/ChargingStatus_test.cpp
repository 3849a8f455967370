// A1_5, the charging status, and when each of its bytes changes.
#include <array>

#include "tests/support/TestRuntime.h"

namespace {

class CChargingStatus : public CStationTest {
  protected:
    CChargingStatus() { runtime.m_sendflag = 1; }
    // The body that `port` posts in a tick, without the equipment number.
    std::string Charging(int port) {
        live.SetSignal(PortBase(port) + 177, 1);
        runtime.Port(port).chargingTicks = 100;
        for (const std::string& message : Posted([this] { runtime.SchedulerTick(); }))
            if (message.rfind("A1_5 " + kEquipmentHex + ToHex(&port, 1), 0) == 0) return message.substr(29);
        return "none";
    }
    // So many bytes of it.
    std::string Charging(int port, std::size_t offset, std::size_t bytes) {
        return Charging(port).substr((offset - 8) * 3, bytes * 3 - 1);
    }
    // The kind of vehicle identity, and then a value of its own in every byte.
    void SetArea(int port, std::uint8_t kind) {
        std::array<std::uint8_t, kChargingAreaSize> area{};
        for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
        area[0] = kind;
        live.SetChargingArea(port, area);
    }
    // Points `first` to `last` in one group, and their live values.
    void MakeTelemetry(int first, int last, const std::string& scaleAndOffset,
                       const std::function<std::uint32_t(int)>& raw) {
        PointRows rows;
        runtime.m_portCount = 1;  // no copies
        for (int i = first; i <= last; ++i) {
            rows.yc.push_back("1,'p'," + std::to_string(i) + ",0,0," + scaleAndOffset + ",0,0");
            live.SetYc(i, raw(i));
            std::array<char, kEntryAreaSize> area{};
            (std::to_string(i) + "-bcdefghijklmnopqrstuvwxyz0123456789").copy(area.data(), area.size());
            CLiveValues::Put(live.getYc(i), kEntryArea, area);
        }
        Load(rows);
    }
};
using ChargingStatus = CChargingStatus;

// A value of its own in every place that is read.
TEST_F(ChargingStatus, EveryPlace) {
    for (int i = 0; i <= 255; ++i) live.SetDd(i, std::stoull("1" + std::to_string(i) + "234567890"));
    MakeTelemetry(100, 1123, "1,1048576", [](int i) {
        return static_cast<std::uint32_t>(std::stoul("6" + std::to_string(i) + "9"));
    });
    for (int i = 0; i <= 1200; ++i) live.SetSignal(i, i <= 20 ? 0 : static_cast<std::uint8_t>(i));
    runtime.m_portCount = 8;
    SetArea(8, 1);
    live.SetGunState(8, 1);
    EXPECT_EQ(
        "08 06 07 08 09 03 00 5b 11 65 11 15 4f 1f 4f 29 6f 11 79 d9 4e e3 4e c7 51 47 4f ed 4e f7 4e 19 "
        "50 19 00 45 51 19 00 4f 51 19 00 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 e6 e3 e0 dd 0a 07 04 01 "
        "fe fb f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d 33 4f c3 b0 51 4f 5b 4f 65 4f 6f 4f "
        "83 8d 4f 97 4f 5f b0 ab 4f b5 4f bf 4f c9 4f d3 4f 81 51 19 00 a7 00 15 45 0b 4f c1 ad b7 46 47 "
        "48 4a 4b 4c 01 8f 99 a3 cb 6d 6c 6b 6a 69 68 67 66 65 64 63 62 2d 36 32 30 31 38 32 30 31 37 32 "
        "30 31 19 4f f1 e7 4f 19 fb 64 63 62 2d 30 33 30 31 23 50 19 00 2d 50 19 00 37 50 19 00 41 50 19 "
        "00 d2 de 22 88 20 01 00 00 d2 a8 bd c3 20 01 00 00 4b 50 19 00 55 50 19 00 5f 50 19 00 69 50 19 "
        "00",
        Charging(8));
}

// One value for all, of which every conversion makes another low byte.
TEST_F(ChargingStatus, EveryConversion) {
    MakeTelemetry(100, 227, "-0.0001,1000", [](int) { return 3221225472U; });
    EXPECT_EQ(
        "00 00 00 00 00 02 00 e8 03 e8 03 e8 03 00 00 e8 e8 03 e8 56 a7 56 a7 e8 03 e8 03 e8 03 e8 03 e8 "
        "03 00 00 e8 03 00 00 e8 03 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 e8 03 32 ee 56 a7 56 a7 56 a7 56 a7 "
        "e8 e8 03 e8 03 32 ee e8 03 e8 03 e8 03 e8 03 e8 03 e8 03 00 00 00 00 00 00 e8 03 00 9e 9e 00 00 "
        "00 00 00 00 9e 00 00 00 00 6e 6d 6c 6b 6a 69 68 67 66 65 64 63 62 2d 30 33 31 2d 32 33 31 2d 31 "
        "33 31 00 03 e8 e8 03 00 00 65 64 63 62 2d 34 33 31 e8 03 00 00 e8 03 00 00 e8 03 00 00 e8 03 00 "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 e8 03 00 00 e8 03 00 00 e8 03 00 00 e8 03 00 "
        "00",
        Charging(0));
}

// It looks at the station's faults, not at that of the port, and an unknown gun state is none.
TEST_F(ChargingStatus, StateCode) {
    Load({{}, {"1,'p',2,0,0,1,0,0,0"}});
    const std::tuple<int, std::uint8_t, const char*> kCases[] = {
        {500, 0, "02"}, {500, 1, "03"}, {500, 2, "05"}, {500, 3, "06"}, {500, 4, "01"}, {500, 6, "00"},
        {99, 3, "06"},  {227, 3, "06"}, {0, 3, "01"},   {20, 3, "01"},  {21, 3, "06"}};
    for (const auto& [signal, gun, code] : kCases) {
        live.SetSignal(signal, 1);
        live.SetGunState(2, gun);
        EXPECT_EQ(code, Charging(2, 13, 1)) << signal << ' ' << int{gun};
        live.SetSignal(signal, 0);
    }
}

TEST_F(ChargingStatus, VehicleIdentityByItsKind) {
    Load({{}, {"1,'p',2,0,0,1,0,0,0"}});
    std::uint8_t kind = 0;
    for (const char* identity :
         {"00 00 00 00 00 00 00 00", "0c 09 06 03 00 fd fa f7", "00 00 00 00 00 00 00 00",
          "3c 39 36 33 30 2d 2a 27", "24 21 1e 1b 18 15 12 0f", "3c 39 36 33 30 2d 2a 27",
          "00 00 00 00 00 00 00 00"}) {
        SetArea(2, kind);
        EXPECT_EQ(ToHex(&kind, 1) + ' ' + identity, Charging(2, 51, 9));
        ++kind;
    }
}

// A point outside the tables costs nothing.
TEST_F(ChargingStatus, OfTwoPointsForOneFieldTheLaterOneCounts) {
    runtime.m_portCount = 1;
    Load({{}, {"1,'a',132,0,0,1,0,0,0", "1,'b',132,0,0,1,65793,0,0", "1,'outside',-1,0,0,1,0,0,0"}});
    live.SetYc(132, 197121);
    CLiveValues::Put(live.getYc(132), kEntryArea, std::array{'a', 'b', 'c', 'd', 'e', 'f'});
    EXPECT_EQ("64 63 62 61 00 00 00 00 04 03 02", Charging(0, 162, 11));
    runtime.Port(0).chargingTicks = 100;
    const std::string said = Printed([this] { runtime.SchedulerTick(); });
    EXPECT_EQ("Send_DC_A1_5: msgcode: 34509 data:\n" + Take().at(0).substr(5) + " \n", said);
    runtime.m_sendflag = 0;  // nothing is read anew then
    live.SetYc(132, 1);
    EXPECT_EQ("none", Charging(0));
    EXPECT_EQ(197121U, runtime.m_ycGroups.front().points.front().currentRaw);
}

}  // namespace
