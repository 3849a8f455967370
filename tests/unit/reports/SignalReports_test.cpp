// A1_13, A1_11 and A1_15: which signals of a port they carry, and when; A1_14, the port state, and A1_6, the
// idle status.
#include "tests/support/TestRuntime.h"

namespace {

// A status point as the settings give it.
std::string Yx(int number, int address = 0, int source = 0) {
    return "1,'p',3," + std::to_string(number) + ",0," + std::to_string(address) + ',' +
           std::to_string(source);
}

class CSignalReports : public CStationTest {
  protected:
    CSignalReports() { runtime.m_sendflag = 1; }
    // What the report with the number `n` posts for a port, without the equipment number; what it prints.
    std::string Report(int n, int port) {
        printed = Printed([&] {
            if (n == 13) runtime.Send_DC_A1_13(port);
            if (n == 11) runtime.Send_DC_A1_11(port);
            if (n == 15) runtime.Send_DC_A1_15(port);
        });
        const auto posted = Take();
        return posted.empty() ? "none" : posted[0].substr(30);
    }
    std::string printed;

    void Set(std::initializer_list<std::pair<int, int>> states) {
        for (const auto& [number, state] : states) live.SetSignal(number, static_cast<std::uint8_t>(state));
        Walk();
    }
};
using SignalReports = CSignalReports;
using testing::HasSubstr;

// 98 gets no copy, an address of 0 no entry, an unknown source nothing; two records of one number share what
// was last reported. In the order of the list, a station-wide fault sets the summary, a port's raises it.
TEST_F(SignalReports, TwoPorts) {
    Load({{Yx(20, 0x12345), Yx(101, 101), Yx(21, 1), Yx(98, 98), Yx(98, 97), Yx(99, 99), Yx(134, 134),
           Yx(110, 366, 1), Yx(5, 0), Yx(3, 9, 2)},
          {}});
    live.SetSignal2(110, 7);
    live.SetSignal2(238, 2);
    Set({{5, 1}, {21, 6}, {98, 1}, {227, 5}, {229, 5}, {262, 1}});
    EXPECT_EQ(
        "01 08 00 00 06 45 23 01 00 65 00 00 00 01 00 00 06 62 00 00 01 61 00 00 01 63 00 00 00 86 00 00 00 "
        "6e 01 00 07",
        Report(13, 1));
    EXPECT_EQ("02 06 00 01 06 45 23 01 00 65 00 00 05 01 00 00 06 63 00 00 05 86 00 00 01 6e 01 00 02",
              Report(13, 2));
    EXPECT_EQ("Send_DC_A1_13: msgcode: 34517 data:\n" + kEquipmentHex, printed.substr(0, 60));
    EXPECT_EQ("01 00 06 03 01 00 06 62 00 01 6e 01 07", Report(11, 1));
    EXPECT_EQ("02 01 06 05 65 00 05 01 00 06 63 00 05 86 00 01 6e 01 02", Report(11, 2));
    EXPECT_EQ("Send_DC_A1_11: DC_A1.11  msgcode: 34515 data:\n" + kEquipmentHex, printed.substr(0, 70));
    EXPECT_EQ("02 01 00 d0 07 00 01 00 04", Report(15, 2));
    // A station-wide point is reported once for each port.
    Set({{20, 1}, {262, 0}});
    EXPECT_EQ("01 01 06 01 45 23 01", Report(11, 1));
    EXPECT_EQ("02 01 06 02 45 23 01 86 00 00", Report(11, 2));
}

// The copy that port 3 has of 134 stands where port 4's is.
TEST_F(SignalReports, GunSignalsByNumberAlone) {
    runtime.m_portCount = 8;
    Load({{Yx(134), Yx(135), Yx(136), Yx(137), Yx(138), Yx(135, 0, 1)}, {}});
    live.SetSignal2(135, 3);
    Set({{134, 3}, {136, 3}, {137, 3}, {138, 3}, {518, 3}});
    EXPECT_EQ("01 03 00 d0 07 00 03 00 d2 07 00 03 00 d3 07 00 03 00 04", Report(15, 1));
    EXPECT_THAT(printed, testing::EndsWith(" d3 07 00 03 \n"));  // cut short
    EXPECT_EQ("04 01 00 d0 07 00 03 00 04", Report(15, 4));
}

// It is not counted: of A1_13 it is lost, of A1_11 it follows on the next ticks.
TEST_F(SignalReports, WhatDoesNotFit) {
    PointRows rows;
    for (int number = 0x200; number < 0x390; ++number) {
        rows.yx.push_back(Yx(number, number));
        live.SetSignal(number, 1);
    }
    runtime.m_portCount = 1;
    Load(rows);
    Walk();
    EXPECT_EQ("00 fc 00 00 00 00 02 00 01", Report(13, 0).substr(0, 26));
    for (const char* entries : {"a6 00 02 01", "a6 a6 02 01", "44 4c 03 01"})
        EXPECT_EQ(entries, Report(11, 0).substr(9, 11));
}

// A1_14 goes out when it changes: by the gun state, and 1 with a fault or an unknown state. The fault of a
// port is its own, the two of the station are everybody's, an alarm is none. What was posted is remembered
// while reporting is off. A step is what is set (the gun state of port 2) and what ports 1 and 2 report then.
TEST_F(SignalReports, PortState) {
    for (const auto& row : Table(R"(
report 1: 02 02     | gun 1: -- 03        | gun 2: -- 05       | gun 3: -- 06       | gun 4: -- 01        | gun 7: -- --
gun 0: -- 02        | signal 227 2: -- 01 | signal 227 0: -- 02 | signal 99 1: 01 -- | signal 99 0: 02 -- | signal 20 1: 01 01
signal 20 0: 02 02  | signal 0 1: 01 01   | signal 0 0: 02 02  | signal 21 1: -- -- | report 0: -- --     | gun 1: -- --
report 2: -- --     | report 1: -- 03)"))
        for (const std::string& step : row) {
            const std::size_t colon = step.find(':');
            const auto value = static_cast<std::uint8_t>(step[colon - 1] - '0');
            if (step[0] == 'g') live.SetGunState(2, value);
            if (step[0] == 's') live.SetSignal(std::stoi(step.substr(7)), value);
            if (step[0] == 'r') runtime.m_sendflag = value;
            std::string codes;
            for (const int port : {1, 2}) {
                const auto posted = Posted([&] { runtime.Send_DC_A1_14(port); });
                codes += posted.empty() ? " --" : posted[0].substr(47, 3);
            }
            EXPECT_EQ(step.substr(colon + 1), codes) << step;
        }
    live.SetGunState(2, 2);
    EXPECT_EQ("Send_DC_A1_14: msgcode: 34518 data:\n02 01 00 e8 03 00 05 00 00 \n",
              Printed([this] { runtime.Send_DC_A1_14(2); }));
    EXPECT_EQ("A1_14 " + kEquipmentHex + "02 01 00 e8 03 00 05 00 00 01", Take().at(0));
}

// A1_6: signals, state and counter are those of the port, voltage and current are everybody's.
TEST_F(SignalReports, IdleStatus) {
    Load({{}, {"1,'i',3,0,0,1,0,0,0", "1,'v',2,0,0,0.1,0,0,0", "1,'later i',3,0,0,1,65536,0,0"}});
    runtime.m_idleReportTicks = 0;
    runtime.m_idleSequence = 65534;
    for (int i = 0; i < 4; ++i) live.SetSignal(128 + 134 + i, static_cast<std::uint8_t>(200 + i));
    live.SetGunState(1, 1);
    live.SetGunState(2, 9);  // an unknown state is no fault here
    live.SetYc(2, 7500);
    live.SetYc(3, 12345);
    live.SetDd(32, 4294967296);
    const auto tick = [this] { runtime.SchedulerTick(); };
    EXPECT_THAT(
        Posted(tick),
        testing::ElementsAre(
            HasSubstr(R"("ctrFlag":0,"workFlag":"0003")"),
            R"(A1_6 {"time":"1709603100","sn":65535,"type":"dcNonWork","ver":"1.0.0.20230601","equipNo":"4445464748495051",)"
            R"("portNo":2,"connFlag":200,"gunHdrFlag":201,"lockFlag":202,"ctrFlag":203,"workFlag":"0000",)"
            R"("outputV":75,"outputC":123.45,"meterVal":"429496.729600"})",
            testing::_, testing::_));
    live.SetYc(3, 4294967295);
    live.SetDd(32, UINT64_MAX);
    live.SetSignal(227, 1);
    EXPECT_THAT(Posted(tick).at(1),
                testing::AllOf(HasSubstr(R"("sn":1,)"), HasSubstr(R"("workFlag":"0001",)"),
                               HasSubstr(R"("outputC":655.35,"meterVal":"1844674407370955.250000"})")));
}

}  // namespace
