#include "reports/ChargingStatus.h"

#include <gmock/gmock.h>

#include <cmath>

#include "points/PortNumbering.h"
#include "reports/PortState.h"
#include "tests/support/ReportTest.h"

namespace {

using testing::ElementsAre;

class CChargingStatus : public CReportTest {
  protected:
    // A value of its own in every place that the report of `port` reads, and others all around.
    void FillStation(int port) {
        constexpr std::uint64_t kDecoy = 0xEEEEEEEEEEEEEEEE;
        for (int i = 22; i < 2048; ++i) live.SetSignal(i, 0xEE);
        for (const int k : {134, 135, 136, 137, 197, 198, 199, 200, 202, 203, 204})
            live.SetSignal(PortBase(port) + k, static_cast<std::uint8_t>(k - 100));
        live.SetSignal(21, 0x15);
        for (int i = 0; i < 256; ++i) live.SetDd(i, kDecoy);
        live.SetDd(CounterBase(port) + 15, 0x161514131211100F);
        live.SetDd(CounterBase(port) + 16, 0x1716151413121110);
        std::array<std::uint8_t, kChargingAreaSize> area{};
        area.fill(0xEE);
        for (int other = 1; other <= kMaxPorts; ++other) {
            live.SetChargingArea(other, area);
            live.SetGunState(other, 2);
        }
        SetArea(port, 1);
        live.SetGunState(port, 3);
    }
    void SetArea(int port, std::uint8_t kind) {
        std::array<std::uint8_t, kChargingAreaSize> area{};
        for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
        area[0] = kind;
        live.SetChargingArea(port, area);
    }

    // `size` bytes of the body from `offset` on.
    std::string Bytes(const std::list<YcPointRecord>& points, std::size_t offset, std::size_t size,
                      int port = 1) {
        return ToHex(BuildChargingBody(live, points, port).data() + offset, size);
    }
};
using ChargingStatus = CChargingStatus;

// Every point number in and around the report's range, for `port`, and points of its neighbours in between.
std::list<YcPointRecord> AllPoints(int port, std::uint32_t raw, std::uint32_t step, float scale,
                                   std::uint32_t offset) {
    std::list<YcPointRecord> points;
    for (int d = 100; d <= 228; ++d) {
        YcPointRecord point =
            Point(PortBase(port) + d, raw + static_cast<std::uint32_t>(d) * step, scale, offset);
        for (int i = 0; i < kYcAreaSize; ++i) point.name[i] = static_cast<char>(d + i);
        points.push_back(point);
        for (const int neighbour : {-128, 128})
            points.push_back(Point(point.pointNumber + neighbour, 0xEEEE));
    }
    return points;
}

TEST_F(ChargingStatus, WholeBody) {
    const struct {
        std::uint32_t raw;
        std::uint32_t step;  // what the raw value grows by from point to point
        float scale;
        std::uint32_t offset;
        const char* body;
    } kCases[] = {
        // A value of its own for every point.
        {458752, 259, 1, 1048576,
         "51 50 49 48 47 46 45 44 02 22 23 24 25 06 00 2f 66 32 67 4a 6f 4d 70 50 35 68 68 38 69 3b 6a 19 "
         "b5 59 74 3e 6b 41 6c 98 89 17 00 f2 a7 17 00 f5 a8 17 00 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 "
         "e6 e3 e0 dd 0a 07 04 01 fe fb f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d 53 72 aa 8c "
         "5c 75 5f 76 62 77 65 78 6b 6e 7b 71 7c 8c 82 77 7e 7a 7f 7d 80 80 81 83 82 04 ae 17 00 a9 00 15 "
         "61 47 6e 64 5e 61 62 63 64 66 67 68 44 55 58 5b 67 92 91 90 8f 8e 8d 8c 8b 8a 89 88 87 86 85 84 "
         "83 82 87 86 85 84 86 85 84 83 17 85 8c 89 84 17 8f 8d 8c 8b 8a 89 88 87 86 9b 8a 17 00 9e 8b 17 "
         "00 a1 8c 17 00 a4 8d 17 00 0f 10 11 12 13 14 15 16 10 11 12 13 14 15 16 17 a7 8e 17 00 aa 8f 17 "
         "00 ad 90 17 00 b0 91 17 00"},
        // The next two tell the conversions apart.
        {0xFFFFFFF6, 0, 10, 1000,
         "51 50 49 48 47 46 45 44 02 22 23 24 25 06 00 e7 03 e7 03 e7 03 ff ff e7 e7 03 e7 84 03 84 03 e7 "
         "03 e7 03 e7 03 e7 03 e7 03 00 00 e7 03 00 00 e7 03 00 00 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 "
         "e6 e3 e0 dd 0a 07 04 01 fe fb f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d e7 03 00 00 "
         "84 03 84 03 84 03 84 03 e7 e7 03 e7 03 00 00 e7 03 e7 03 e7 03 e7 03 e7 03 e7 03 00 00 ff 00 15 "
         "61 e7 03 ff e7 e7 62 63 64 66 67 68 e7 ff ff ff ff 92 91 90 8f 8e 8d 8c 8b 8a 89 88 87 86 85 84 "
         "83 82 87 86 85 84 86 85 84 83 00 03 e7 e7 03 00 ff 8d 8c 8b 8a 89 88 87 86 e7 03 00 00 e7 03 00 "
         "00 e7 03 00 00 e7 03 00 00 0f 10 11 12 13 14 15 16 10 11 12 13 14 15 16 17 e7 03 00 00 e7 03 00 "
         "00 e7 03 00 00 e7 03 00 00"},
        {10, 0, -1, 1000,
         "51 50 49 48 47 46 45 44 02 22 23 24 25 06 00 e8 03 e8 03 e8 03 de 03 e8 e8 03 e8 de 03 de 03 e8 "
         "03 e8 03 e8 03 e8 03 e8 03 00 00 e8 03 00 00 e8 03 00 00 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 "
         "e6 e3 e0 dd 0a 07 04 01 fe fb f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d e8 03 f2 03 "
         "de 03 de 03 de 03 de 03 e8 e8 03 e8 03 f2 03 e8 03 e8 03 e8 03 e8 03 e8 03 e8 03 00 00 de 00 15 "
         "61 e8 03 de de de 62 63 64 66 67 68 de de de de de 92 91 90 8f 8e 8d 8c 8b 8a 89 88 87 86 85 84 "
         "83 82 87 86 85 84 86 85 84 83 00 03 e8 e8 03 00 de 8d 8c 8b 8a 89 88 87 86 e8 03 00 00 e8 03 00 "
         "00 e8 03 00 00 e8 03 00 00 0f 10 11 12 13 14 15 16 10 11 12 13 14 15 16 17 e8 03 00 00 e8 03 00 "
         "00 e8 03 00 00 e8 03 00 00"},
    };
    for (const int port : {0, 1, 2, 8}) {
        FillStation(port);
        for (const auto& c : kCases) {
            ::Bytes expected = Hex(c.body);
            expected.at(8) = static_cast<std::uint8_t>(port);
            const ChargingBody body =
                BuildChargingBody(live, AllPoints(port, c.raw, c.step, c.scale, c.offset), port);
            EXPECT_EQ(ToHex(expected), ToHex(body.data(), body.size())) << port << ' ' << c.raw;
        }
    }
}

TEST(YcConversion, Edges) {
    using F = EYcForm;
    constexpr std::uint32_t kMax = 0xFFFFFFFF;
    constexpr float kInfinite = INFINITY;
    const struct {
        std::uint32_t raw;
        float scale;
        std::uint32_t offset;
        std::vector<std::pair<EYcForm, std::uint32_t>> results;
    } kCases[] = {
        // Product cut before the sum, or after it.
        {3, 0.5F, 10, {{F::U, 11}, {F::S, 11}, {F::A, 11}, {F::AS, 11}, {F::N, 8}}},
        {3, -0.5F, 10, {{F::U, 10}, {F::S, 9}, {F::A, 8}, {F::AS, 8}, {F::N, 11}}},
        {2000, -1, 10, {{F::U, 10}, {F::S, 10U - 2000U}, {F::A, 0}, {F::AS, 0}, {F::N, 2010}}},
        // The integer sum is exact and wraps, the float sum rounds and saturates.
        {1, 1, 16777217, {{F::U, 16777218}, {F::S, 16777218}, {F::A, 16777216}, {F::N, 16777215}}},
        {2, 1, kMax, {{F::U, 1}, {F::S, 1}, {F::A, kMax}, {F::AS, kMax}, {F::N, 4294967295}}},
        // Around 2^31 and 2^32.
        {2147483648, 1, 0, {{F::U, 2147483648}, {F::S, 2147483647}, {F::A, 2147483648}, {F::AS, 0}}},
        {4294967040, 1, 1, {{F::U, 4294967041}, {F::S, 2147483648}, {F::A, 4294967040}}},
        {65536, 65536, 1, {{F::U, 0}, {F::S, 2147483648}, {F::A, kMax}, {F::AS, kMax}, {F::N, 0}}},
        {65536, -65536, 1, {{F::U, 1}, {F::S, 2147483649}, {F::A, 0}, {F::AS, 0}, {F::N, kMax}}},
        // Raw as signed.
        {0xFFFFFFF6, 10, 1000, {{F::A, kMax}, {F::AS, 900}, {F::U, 999}, {F::N, 0}}},
        // Product and sum are rounded one after the other: 100 x 0.1 is 10 exactly.
        {100, 0.1F, 11, {{F::N, 1}, {F::A, 21}, {F::U, 21}}},
        {7500, 0.1F, 0, {{F::U, 750}, {F::A, 750}}},
        {1, NAN, 7, {{F::U, 7}, {F::S, 7}, {F::A, 0}, {F::AS, 0}, {F::N, 0}}},
        {1, kInfinite, 7, {{F::U, 6}, {F::S, 0x80000006}, {F::A, kMax}, {F::AS, kMax}, {F::N, 0}}},
        {1, -kInfinite, 7, {{F::U, 7}, {F::S, 0x80000007}, {F::A, 0}, {F::AS, 0}, {F::N, kMax}}},
        {0, kInfinite, 7, {{F::U, 7}, {F::S, 7}, {F::A, 0}, {F::N, 0}}},
    };
    for (const auto& c : kCases)
        for (const auto& [form, expected] : c.results)
            EXPECT_EQ(expected, ConvertYc(form, Point(101, c.raw, c.scale, c.offset)))
                << c.raw << " x " << c.scale << ", " << c.offset << ", form " << static_cast<int>(form);
}

TEST_F(ChargingStatus, LaterPointWinsAndMissingIsZero) {
    YcPointRecord first = Point(132, 0x010203);
    first.name[0] = 1;
    YcPointRecord second = Point(132, 0x0A0B0C);
    second.name[1] = 2;
    EXPECT_EQ("00 00 02 00 00 00 00 00 0a 0b 0c", Bytes({first, second}, 162, 11));
    EXPECT_EQ("00 00 00 01 00 00 00 00 01 02 03", Bytes({second, first}, 162, 11));
    live.SetEquipment({});
    EXPECT_EQ("00 00 00 00 00 00 00 00 01 00 00 00 00 02 " + ToHex(::Bytes(219)), Bytes({}, 0, 233));
}

TEST_F(ChargingStatus, VehicleIdentityByKind) {
    const std::pair<int, const char*> kCases[] = {
        {1, "01 0c 09 06 03 00 fd fa f7"}, {3, "03 3c 39 36 33 30 2d 2a 27"},
        {5, "05 3c 39 36 33 30 2d 2a 27"}, {4, "04 24 21 1e 1b 18 15 12 0f"},
        {0, "00 00 00 00 00 00 00 00 00"}, {2, "02 00 00 00 00 00 00 00 00"},
        {6, "06 00 00 00 00 00 00 00 00"}, {255, "ff 00 00 00 00 00 00 00 00"},
    };
    for (const auto& [kind, bytes] : kCases) {
        SetArea(2, static_cast<std::uint8_t>(kind));
        EXPECT_EQ(bytes, Bytes({}, 51, 9, 2));
    }
}

// Reports that tell the state of a port differ in what they take for a fault.
TEST_F(ChargingStatus, StateCodeNextToThatOfThePortState) {
    const struct {
        int signal;  // set; negative for none
        std::uint8_t gun;
        int charging;
        int portState;
    } kCases[] = {
        {-1, 0, 2, 2}, {-1, 1, 3, 3}, {-1, 2, 5, 5}, {-1, 3, 6, 6}, {-1, 4, 1, 1},  {-1, 5, 0, 1},
        {-1, 6, 0, 1}, {0, 3, 1, 1},  {20, 9, 1, 1}, {21, 3, 6, 6}, {227, 3, 6, 1}, {99, 3, 6, 6},
    };
    for (const auto& c : kCases) {
        live.SetGunState(2, c.gun);
        if (c.signal >= 0) live.SetSignal(c.signal, 1);
        EXPECT_EQ(c.charging, BuildChargingBody(live, {}, 2)[13]) << c.signal << ' ' << int{c.gun};
        runtime.Port(2).lastStateCode = 0;
        EXPECT_THAT(Posted([this] { runtime.Send_DC_A1_14(2); }),
                    ElementsAre("A1_14 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 0" +
                                std::to_string(c.portState) + " 00 00 01"));
        if (c.signal >= 0) live.SetSignal(c.signal, 0);
    }
}

TEST_F(ChargingStatus, FrameAndDump) {
    live.SetSignal(305, 1);
    runtime.Port(2).chargingTicks = 100;
    const std::list<YcPointRecord> points{Point(229, 7512)};
    const Captured said = Capture([&] { runtime.Send_DC_A1_5(points, 2); });
    const std::string body = Bytes(points, 0, 233, 2);
    Drain(1);
    EXPECT_THAT(ReadFrames(), ElementsAre("ed 00 86 cd 00 00 " + body));
    EXPECT_EQ(Line("Send_DC_A1_5", "msgcode: 34509 data:") + body + " \n", Masked(said.out));
}

}  // namespace
