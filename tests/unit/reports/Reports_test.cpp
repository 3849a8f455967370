// What takes a program to show: bodies full of values, lists that overflow, ticks that allocate nothing.
#include <gmock/gmock.h>

#include "app/MainLoop.h"
#include "points/PortNumbering.h"
#include "reports/ChargingStatus.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using Reports = CStationTest;

// A telemetry point as the last refresh left it.
YcPointRecord Point(int number, std::uint32_t raw, float scale = 1, std::uint32_t offset = 0) {
    YcPointRecord point{};
    point.pointNumber = number;
    point.currentRaw = raw;
    point.scale = scale;
    point.offset = offset;
    return point;
}

// A value of its own in every place that the A1_5 of `port` reads, and others all around.
void FillStation(CLiveValues& live, int port) {
    for (int i = 22; i < 2048; ++i) live.SetSignal(i, 0xEE);
    for (const int k : {134, 135, 136, 137, 197, 198, 199, 200, 202, 203, 204})
        live.SetSignal(PortBase(port) + k, static_cast<std::uint8_t>(k - 100));
    live.SetSignal(21, 0x15);
    for (int i = 0; i < 256; ++i) live.SetDd(i, 0xEEEEEEEEEEEEEEEE);
    live.SetDd(CounterBase(port) + 15, 0x161514131211100F);
    live.SetDd(CounterBase(port) + 16, 0x1716151413121110);
    std::array<std::uint8_t, kChargingAreaSize> area{};
    for (int other = 1; other <= kMaxPorts; ++other) {
        live.SetGunState(other, 2);
        live.SetChargingArea(other, area);
    }
    for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
    area[0] = 1;
    live.SetChargingArea(port, area);
    live.SetGunState(port, 3);
}

TEST_F(Reports, ChargingBody) {
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
        // One value for all, of which every conversion makes another low byte.
        {0xC0000000, 0, -0.0001F, 1000,
         "51 50 49 48 47 46 45 44 02 22 23 24 25 06 00 e8 03 e8 03 e8 03 00 00 e8 e8 03 e8 56 a7 56 a7 e8 03 "
         "e8 03 e8 03 e8 03 e8 03 00 00 e8 03 00 00 e8 03 00 00 01 0c 09 06 03 00 fd fa f7 f2 ef ec e9 e6 e3 "
         "e0 dd 0a 07 04 01 fe fb f8 f5 8a 87 84 81 7e 7b 78 75 72 6f 6c 69 66 63 60 5d e8 03 32 ee 56 a7 56 "
         "a7 56 a7 56 a7 e8 e8 03 e8 03 32 ee e8 03 e8 03 e8 03 e8 03 e8 03 e8 03 00 00 00 00 15 61 e8 03 00 "
         "9e 9e 62 63 64 66 67 68 9e 00 00 00 00 92 91 90 8f 8e 8d 8c 8b 8a 89 88 87 86 85 84 83 82 87 86 85 "
         "84 86 85 84 83 00 03 e8 e8 03 00 00 8d 8c 8b 8a 89 88 87 86 e8 03 00 00 e8 03 00 00 e8 03 00 00 e8 "
         "03 00 00 0f 10 11 12 13 14 15 16 10 11 12 13 14 15 16 17 e8 03 00 00 e8 03 00 00 e8 03 00 00 e8 03 "
         "00 00"},
    };
    for (const int port : {0, 1, 2, 8}) {
        FillStation(live, port);
        for (const auto& c : kCases) {
            std::list<YcPointRecord> points;
            for (std::uint32_t d = 100; d <= 228; ++d) {
                const int number = PortBase(port) + static_cast<int>(d);
                points.push_back(Point(number, c.raw + d * c.step, c.scale, c.offset));
                for (std::uint32_t i = 0; i < kYcAreaSize; ++i)
                    points.back().name[i] = static_cast<char>(d + i);
                for (const int neighbour : {-128, 128}) points.push_back(Point(number + neighbour, 0xEEEE));
            }
            Bytes expected = Hex(c.body);
            expected.at(8) = static_cast<std::uint8_t>(port);
            const ChargingBody body = BuildChargingBody(live, points, port);
            EXPECT_EQ(ToHex(expected), ToHex(body.data(), body.size())) << port << ' ' << c.raw;
        }
    }
}

TEST_F(Reports, WhatDoesNotFitIsNotCounted) {
    YxPointRecord point{};
    for (int i = 1; i <= 400; ++i) {
        point.pointNumber = 199 + i;
        point.address = i;
        point.current = 1;
        runtime.m_yxPoints.push_back(point);
    }
    point.pointNumber = 137;  // records of one gun signal that differ take an entry each
    point.address = 0;
    for (point.current = 1; point.current <= 101; ++point.current) runtime.m_yxPoints.push_back(point);
    runtime.SelectReportedPoints();
    const auto changes = [this] { runtime.Send_DC_A1_11(0); };
    const struct {
        std::function<void()> send;
        std::size_t size;
        const char* begin;  // behind the equipment number
        const char* end;
    } kCases[] = {
        {[this] { runtime.Send_DC_A1_13(0); }, 13 + 4 * 252, "00 fc 00 00 00 01 00 00 01 ",
         " fb 00 00 01 fc 00 00 01"},
        {changes, 12 + 3 * 166, "00 00 00 a6 01 00 01 ", " a6 00 01"},
        {changes, 12 + 3 * 166, "00 00 00 a6 a7 00 01 ", " 4c 01 01"},  // the rest follows on the next ticks
        {changes, 12 + 3 * 68, "00 00 00 44 4d 01 01 ", " 90 01 01"},
        {[this] { runtime.Send_DC_A1_15(0); }, 512, "00 64 00 d3 07 00 01 00 ", " d3 07 00 64 00 04"},
    };
    for (const auto& c : kCases) {
        const std::vector<std::string> messages = Posted(c.send);
        ASSERT_EQ(1U, messages.size());
        EXPECT_EQ(6 + c.size * 3 - 1, messages[0].size());
        EXPECT_THAT(messages[0].substr(6 + 8 * 3), testing::StartsWith(c.begin));
        EXPECT_THAT(messages[0], testing::EndsWith(c.end));
    }
    EXPECT_THAT(Posted(changes), testing::IsEmpty());
}

TEST_F(Reports, QuietPassesAllocateNothing) {
    std::vector<YxRow> yx;
    std::vector<YcRow> yc;
    for (int number = 0; number < 612; ++number) {
        yx.push_back({number, number + 1, number % 7 == 0 ? kSourceYx2 : kSourceYx});
        yc.push_back({number});
    }
    MakePointSettings(yx, yc);
    runtime.m_sendflag = 1;
    runtime.m_portCount = 8;
    std::uint8_t counter = 0;
    const auto run = [&](int passes) {
        for (int i = 0; i < passes; ++i) RunPass(runtime, counter);
    };
    Printed([&] {
        runtime.InitPointSettingYC();
        runtime.InitPointSettingYX();
        runtime.InitSOE();
        run(20);
    });
    ASSERT_LE(8U * 512, runtime.m_yxPoints.size());
    const std::uint64_t before = Allocations();
    run(500);
    EXPECT_EQ(before, Allocations());
    Printed([&] { run(100); });  // snapshots fall due: the counter does count
    EXPECT_LT(before, Allocations());
}

}  // namespace
