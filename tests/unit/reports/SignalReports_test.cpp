#include <gmock/gmock.h>

#include "points/PointSettings.h"
#include "tests/support/Points.h"
#include "tests/support/ReportTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kEquipment = "51 50 49 48 47 46 45 44 ";

class CSignalReports : public CReportTest {
  protected:
    struct Row {
        YxRow point;
        std::uint8_t state = 0;
    };

    // Points as the settings give them; every copy begins with the same state.
    void Load(const std::vector<Row>& rows, int ports) {
        runtime.m_portCount = ports;
        runtime.m_yxPoints.clear();
        for (const Row& row : rows) {
            YxPointRecord record{};
            record.pointNumber = row.point.number;
            record.address = row.point.address;
            record.source = row.point.source;
            record.current = row.state;
            AppendYxPoint(runtime.m_yxPoints, record, ports);
        }
        runtime.SelectReportedPoints();
    }
    void Detect() {
        Capture([this] { runtime.DetectStatusChanges(); });
    }
    std::vector<std::string> Snapshot(int port) {
        return Posted([&] { runtime.Send_DC_A1_13(port); });
    }
    // Both change reports of a port.
    std::vector<std::string> Changes(int port) {
        return Posted([&] {
            runtime.Send_DC_A1_11(port);
            runtime.Send_DC_A1_15(port);
        });
    }
};
using SignalReports = CSignalReports;

TEST_F(SignalReports, BodiesOfTwoPorts) {
    constexpr std::int32_t kUnknownSource = 2;
    Load({{{20, 0x012345}},
          {{21, 1}},
          {{5, 0}},
          {{98, 0x62}},  // the first signal of a port, which gets no copies
          {{99, 0x63}},
          {{101, 0x65}},
          {{134, 0x86}},
          {{102, 0x01000000}},
          {{110, 0x6E}},
          {{110, 0x016E, kSourceYx2}},
          {{3, 9, kUnknownSource}}},
         2);
    for (const int on : {5, 21, 98, 227, 238, 262}) live.SetSignal(on, 1);
    live.SetSignal2(110, 7);
    live.SetSignal2(238, 2);
    Detect();
    EXPECT_THAT(Snapshot(1),
                ElementsAre("A1_13 " + kEquipment +
                            "01 09 00 00 01 45 23 01 00 01 00 00 01 62 00 00 01 63 00 00 00 65 00 00 00 "
                            "86 00 00 00 00 00 00 00 6e 00 00 00 6e 01 00 07"));
    EXPECT_THAT(Snapshot(2),
                ElementsAre("A1_13 " + kEquipment +
                            "02 08 00 01 01 45 23 01 00 01 00 00 01 63 00 00 01 65 00 00 00 86 00 00 01 "
                            "00 00 00 00 6e 00 00 01 6e 01 00 02"));
    EXPECT_THAT(Changes(1), ElementsAre("A1_11 " + kEquipment + "01 00 01 03 01 00 01 62 00 01 6e 01 07"));
    EXPECT_THAT(Changes(2), ElementsAre("A1_11 " + kEquipment +
                                            "02 01 01 05 01 00 01 63 00 01 86 00 01 6e 00 01 6e 01 02",
                                        "A1_15 " + kEquipment + "02 01 00 d0 07 00 01 00 04"));
    Detect();
    for (const int port : {1, 2}) EXPECT_THAT(Changes(port), IsEmpty());

    live.SetSignal(20, 1);  // station-wide: reported once for each port, the later one on a later tick
    live.SetSignal(262, 0);
    Detect();
    EXPECT_THAT(Changes(1), ElementsAre("A1_11 " + kEquipment + "01 01 01 01 45 23 01"));
    live.SetSignal(20, 9);
    Detect();
    EXPECT_THAT(Changes(2), ElementsAre("A1_11 " + kEquipment + "02 01 01 02 45 23 09 86 00 00",
                                        "A1_15 " + kEquipment + "02 01 00 d0 07 00 00 00 04"));
    EXPECT_THAT(Changes(1), ElementsAre("A1_11 " + kEquipment + "01 09 01 01 45 23 09"));
}

TEST_F(SignalReports, FaultSummariesInListOrder) {
    const struct {
        std::vector<Row> rows;
        const char* summaries;
    } kCases[] = {
        {{{{20}, 1}, {{99}, 0}}, "01 00"},
        {{{{20}, 0}, {{99}, 1}}, "01 00"},
        {{{{99}, 1}, {{20}, 0}}, "00 00"},
        {{{{20}, 7}, {{20}, 6}, {{21}, 5}}, "06 05"},
        {{{{20}, 7}, {{99}, 5}, {{101}, 5}}, "01 01"},
        {{{{21}, 0}, {{101}, 1}}, "00 01"},
        {{{{101}, 1}, {{21}, 0}}, "00 00"},
        {{{{99, 0, kSourceYx2}, 1}, {{101, 0, kSourceYx2}, 1}, {{20, 0, kSourceYx2}, 1}}, "00 00"},
        {{{{99, 0, 2}, 1}, {{21, 0, -1}, 1}, {{0}, 1}}, "00 00"},
    };
    for (const auto& c : kCases) {
        Load(c.rows, 1);
        EXPECT_THAT(Snapshot(0), ElementsAre("A1_13 " + kEquipment + "00 00 00 " + c.summaries));
    }
    Load({{{99}, 1}, {{101}, 1}}, 2);
    runtime.m_yxPoints.front().current = 0;  // a fault of one port is none of another's
    EXPECT_THAT(Snapshot(1), ElementsAre("A1_13 " + kEquipment + "01 00 00 00 01"));
    EXPECT_THAT(Snapshot(2), ElementsAre("A1_13 " + kEquipment + "02 00 00 01 01"));
}

TEST_F(SignalReports, LastReportedIsKeptByNumber) {
    Load({{{150, 1}, 1}, {{150, 2}, 1}, {{150, 3, kSourceYx2}, 1}, {{22, 4}, 1}, {{150, 0}, 1}}, 1);
    EXPECT_THAT(Snapshot(0), ElementsAre("A1_13 " + kEquipment +
                                         "00 04 00 00 00 01 00 00 01 02 00 00 01 03 00 00 01 04 00 00 01"));
    EXPECT_THAT(Changes(0), ElementsAre("A1_11 " + kEquipment + "00 00 00 03 01 00 01 03 00 01 04 00 01"));
    EXPECT_THAT(Changes(0), IsEmpty());
}

TEST_F(SignalReports, GunSignalsByNumberAlone) {
    Load({{{134}}, {{135}}, {{136}}, {{137}}, {{138}}, {{135, 0, kSourceYx2}}}, 8);
    for (const int on : {134, 136, 137, 138, 518}) live.SetSignal(on, 3);
    live.SetSignal2(135, 1);
    Detect();
    const Captured said = Capture([this] { runtime.Send_DC_A1_15(1); });
    const std::string body = kEquipment + "01 03 00 d0 07 00 03 00 d2 07 00 03 00 d3 07 00 03 00 04";
    EXPECT_THAT(Take(), ElementsAre("A1_15 " + body));
    EXPECT_EQ(Line("Send_DC_A1_15", "msgcode: 34519 data:") + body.substr(0, 75) + "\n", Masked(said.out));
    for (const int port : {2, 3, 5, 8}) EXPECT_THAT(Changes(port), IsEmpty());
    // The copy made for port 3 stands where port 4's signal is.
    EXPECT_THAT(Changes(4), ElementsAre("A1_15 " + kEquipment + "04 01 00 d0 07 00 03 00 04"));
}

TEST_F(SignalReports, Dumps) {
    Load({{{134, 0x86}, 1}}, 1);
    const std::string snapshot = kEquipment + "00 01 00 00 00 86 00 00 01 \n";
    EXPECT_EQ(Line("Send_DC_A1_13", "msgcode: 34517 data:") + snapshot,
              Masked(Capture([this] { runtime.Send_DC_A1_13(0); }).out));
    const std::string changes = kEquipment + "00 00 00 01 86 00 01 \n";
    EXPECT_EQ(Line("Send_DC_A1_11", "DC_A1.11  msgcode: 34515 data:") + changes,
              Masked(Capture([this] { runtime.Send_DC_A1_11(0); }).out));
    const std::string guns = kEquipment + "00 01 00 d0 07 00 01 00 04 \n";
    EXPECT_EQ(Line("Send_DC_A1_15", "msgcode: 34519 data:") + guns,
              Masked(Capture([this] { runtime.Send_DC_A1_15(0); }).out));
    EXPECT_EQ("", Capture([this] {
                      runtime.Send_DC_A1_11(0);
                      runtime.Send_DC_A1_15(0);
                  }).out);
}

TEST_F(SignalReports, WhatDoesNotFitIsNotCounted) {
    std::vector<Row> rows;
    rows.reserve(400);
    for (int i = 0; i < 400; ++i) rows.push_back({{200 + i, i + 1}, 1});
    Load(rows, 1);
    const auto size = [](const std::string& message) { return (message.size() - 5) / 3; };
    const std::vector<std::string> snapshot = Snapshot(0);
    ASSERT_EQ(1U, snapshot.size());
    EXPECT_EQ(13U + 4 * 252, size(snapshot[0]));
    EXPECT_EQ("00 fc 00 00 00 01 00 00 01", snapshot[0].substr(6 + 24, 26));
    EXPECT_THAT(snapshot[0], testing::EndsWith(" fb 00 00 01 fc 00 00 01"));

    const struct {
        std::size_t size;
        const char* begin;
        const char* end;
    } kTicks[] = {
        {12 + 3 * 166, "00 00 00 a6 01 00 01 ", " a6 00 01"},
        {12 + 3 * 166, "00 00 00 a6 a7 00 01 ", " 4c 01 01"},
        {12 + 3 * 68, "00 00 00 44 4d 01 01 ", " 90 01 01"},
    };
    for (const auto& tick : kTicks) {
        const std::vector<std::string> changes = Changes(0);
        ASSERT_EQ(1U, changes.size());
        EXPECT_EQ(tick.size, size(changes[0]));
        EXPECT_THAT(changes[0], testing::StartsWith("A1_11 " + kEquipment + tick.begin));
        EXPECT_THAT(changes[0], testing::EndsWith(tick.end));
    }
    EXPECT_THAT(Changes(0), IsEmpty());

    // Records of one gun signal that differ take an entry each.
    rows.clear();
    for (int i = 0; i < 101; ++i) rows.push_back({{137}, static_cast<std::uint8_t>(i + 1)});
    Load(rows, 1);
    const std::vector<std::string> guns = Changes(0);
    ASSERT_EQ(1U, guns.size());
    EXPECT_EQ(512U, size(guns[0]));
    EXPECT_THAT(guns[0], testing::StartsWith("A1_15 " + kEquipment + "00 64 00 d3 07 00 01 00 "));
    EXPECT_THAT(guns[0], testing::EndsWith(" d3 07 00 64 00 04"));
}

}  // namespace
