// A1_5, the charging status: where each of its bytes comes from, and the forms of a telemetry value.
#include <array>

#include "reports/YcConversion.h"
#include "tests/support/TestRuntime.h"

namespace {

class CChargingStatus : public CStationTest {
  protected:
    CChargingStatus() { runtime.m_sendflag = 1; }
    // The body that `port` posts in a tick; what is printed.
    std::string Charging(int port) {
        live.SetSignal(PortBase(port) + 177, 1);
        runtime.Port(port).chargingTicks = 100;
        printed = Printed([this] { runtime.SchedulerTick(); });
        return Take().at(0).substr(5);
    }
    std::string printed;

    // The kind of vehicle identity, and then a value of its own in every byte.
    void SetArea(int port, std::uint8_t kind) {
        std::array<std::uint8_t, kChargingAreaSize> area{kind};
        for (std::size_t i = 1; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
        live.SetChargingArea(port, area);
    }
};
using ChargingStatus = CChargingStatus;

// A value of its own in every place that is read. Points of port 8 whose raw values are large, so that each
// form of a value differs from the others; three fields show negative ones.
TEST_F(ChargingStatus, EveryPlace) {
    PointRows rows{{}, {"1,'of two for one field the later one counts',997,0,0,1,0,0,0"}};
    runtime.m_portCount = 1;  // no copies
    for (int i = 100; i <= 227; ++i) {
        const int point = PortBase(8) + i;
        const char* scale = i == 108 || i == 202 || i == 203 ? "-0.00391" : "0.00391";
        rows.yc.push_back("1,'p'," + std::to_string(point) + ",0,0," + scale + ",16777217,0,0");
        live.SetYc(point, 2147483648 + static_cast<std::uint32_t>(i * 1536));
        std::array<char, kEntryAreaSize> area{};
        (std::to_string(i) + "-bcdefghijklmnopqrstuvwxyz0123456789").copy(area.data(), area.size());
        CLiveValues::Put(live.getYc(point), kEntryArea, area);
    }
    for (int i = 0; i < 256; ++i) live.SetDd(i, std::stoull("1" + std::to_string(i) + "234567890"));
    for (int i = 21; i <= 1200; ++i) live.SetSignal(i, static_cast<std::uint8_t>(i));
    Load(rows);
    runtime.m_portCount = 8;
    SetArea(8, 1);
    live.SetGunState(8, 1);
    EXPECT_EQ(
        "08 06 07 08 09 03 00 d4 21 da 21 0a 22 10 22 16 e0 21 46 fc e2 02 e3 a8 23 28 22 f2 21 f8 21 a6 22 "
        "80 01 5a 23 80 01 60 23 80 01 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 e6 e3 e0 dd 0a 07 04 01 fe fb "
        "f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d 1c 22 de dd 44 e3 4a e3 50 e3 56 e3 4c 52 22 "
        "58 22 a2 dd 64 22 6a 22 70 22 76 22 7c 22 7e 23 80 01 c8 00 15 45 04 22 3e ce c8 46 47 48 4a 4b 4c "
        "02 20 26 2c 44 6e 6d 6c 6b 6a 69 68 67 66 65 64 63 62 2d 30 33 31 2d 32 33 31 2d 31 33 31 80 22 8e "
        "88 22 80 94 65 64 63 62 2d 34 33 31 ac 22 80 01 b2 22 80 01 b8 22 80 01 be 22 80 01 d2 de 22 88 20 "
        "01 00 00 d2 a8 bd c3 20 01 00 00 c4 22 80 01 ca 22 80 01 d0 22 80 01 d6 22 80 01",
        Charging(8).substr(24));
}

// The state looks at the station's faults, not at that of the port, and an unknown gun state is none; where
// the vehicle's identity stands is told by its kind.
TEST_F(ChargingStatus, StateAndVehicleIdentity) {
    Load({{}, {"1,'p',2,0,0,1,0,0,0"}});
    for (const auto& row : Table(R"(
227 | 6 | 2 | 00 | 00 00 00 00 00 00 00 00
0   | 3 | 3 | 01 | 3c 39 36 33 30 2d 2a 27
20  | 3 | 4 | 01 | 24 21 1e 1b 18 15 12 0f
21  | 3 | 5 | 06 | 3c 39 36 33 30 2d 2a 27)")) {
        live.SetSignal(std::stoi(row[0]), 1);
        live.SetGunState(2, static_cast<std::uint8_t>(row[1][0] - '0'));
        SetArea(2, static_cast<std::uint8_t>(row[2][0] - '0'));
        const std::string body = Charging(2);
        EXPECT_THAT(printed, testing::StartsWith("Send_DC_A1_5: msgcode: 34509 data:\n" + body + " \n"));
        EXPECT_EQ(row[3], body.substr(39, 2));
        EXPECT_EQ('0' + row[2] + ' ' + row[4], body.substr(153, 26));
        live.SetSignal(std::stoi(row[0]), 0);
    }
}

// Raw value, scale, offset; as U, S, A, AS and N. The integer sum is exact and wraps, the float sum rounds
// and saturates; product and sum are rounded one after the other (100 x 0.1 is 10 exactly).
TEST(YcConversion, EveryForm) {
    for (const auto& row : Table(R"(
3          | -0.5   | 10       | 10 9 8 8 11
1          | 1      | 16777217 | 16777218 16777218 16777216 16777216 16777215
65536      | 65536  | 1        | 0 2147483648 4294967295 4294967295 0
65536      | -65536 | 1        | 1 2147483649 0 0 4294967295
4294967286 | 10     | 1000     | 999 2147484647 4294967295 900 0
100        | 0.1    | 11       | 21 21 21 21 1)")) {
        YcPointRecord point{};
        point.currentRaw = ParseUInt32(row[0].c_str());
        point.scale = ParseFloat(row[1].c_str());
        point.offset = ParseUInt32(row[2].c_str());
        std::string values = std::to_string(ConvertU(point));
        for (const auto convert : {ConvertS, ConvertA, ConvertAS, ConvertN})
            values += ' ' + std::to_string(convert(point));
        EXPECT_EQ(row[3], values) << row[0] << " x " << row[1] << " + " << row[2];
    }
}

}  // namespace
