// A1_13, A1_11 and A1_15: which signals of a port they carry, and when.
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
    // What the report with the number `n` posts for a port, without the equipment number.
    std::string Report(int n, int port) {
        const auto posted = Posted([&] {
            if (n == 13) runtime.Send_DC_A1_13(port);
            if (n == 11) runtime.Send_DC_A1_11(port);
            if (n == 15) runtime.Send_DC_A1_15(port);
        });
        if (posted.empty()) return "none";
        EXPECT_EQ("A1_" + std::to_string(n) + ' ' + kEquipmentHex, posted[0].substr(0, 30));
        return posted[0].substr(30);
    }
    void Set(std::initializer_list<std::pair<int, int>> states) {
        for (const auto& [number, state] : states) live.SetSignal(number, static_cast<std::uint8_t>(state));
        Walk();
    }
};
using SignalReports = CSignalReports;

// 98 gets no copy, an address of 0 no entry, an unknown source nothing.
TEST_F(SignalReports, TwoPorts) {
    Load({{Yx(20, 0x12345), Yx(21, 1), Yx(98, 98), Yx(99, 99), Yx(101, 101), Yx(134, 134), Yx(102, 0x1000000),
           Yx(110, 110), Yx(110, 366, 1), Yx(5, 0), Yx(3, 9, 2)},
          {}});
    live.SetSignal2(110, 7);
    live.SetSignal2(238, 2);
    Set({{5, 1}, {21, 1}, {98, 1}, {227, 1}, {238, 1}, {262, 1}});
    EXPECT_EQ(
        "01 09 00 00 01 45 23 01 00 01 00 00 01 62 00 00 01 63 00 00 00 65 00 00 00 86 00 00 00 00 00 00 00 "
        "6e 00 00 00 6e 01 00 07",
        Report(13, 1));
    EXPECT_EQ(
        "02 08 00 01 01 45 23 01 00 01 00 00 01 63 00 00 01 65 00 00 00 86 00 00 01 00 00 00 00 6e 00 00 01 "
        "6e 01 00 02",
        Report(13, 2));
    EXPECT_EQ("01 00 01 03 01 00 01 62 00 01 6e 01 07", Report(11, 1));
    EXPECT_EQ("none", Report(15, 1));
    EXPECT_EQ("02 01 01 05 01 00 01 63 00 01 86 00 01 6e 00 01 6e 01 02", Report(11, 2));
    EXPECT_EQ("02 01 00 d0 07 00 01 00 04", Report(15, 2));
    Walk();
    for (const int port : {1, 2}) EXPECT_EQ("none none", Report(11, port) + ' ' + Report(15, port));
    // A station-wide point is reported once for each port, the later one on a later tick.
    Set({{20, 1}, {262, 0}});
    EXPECT_EQ("01 01 01 01 45 23 01", Report(11, 1));
    Set({{20, 9}});
    EXPECT_EQ("02 01 01 02 45 23 09 86 00 00", Report(11, 2));
    EXPECT_EQ("02 01 00 d0 07 00 00 00 04", Report(15, 2));
    EXPECT_EQ("01 09 01 01 45 23 09", Report(11, 1));
    // A fault of one port is none of another's; only 99 and 101 of the port raise.
    Set({{20, 0}, {21, 0}, {101, 5}});
    EXPECT_EQ("01 09 00 00 01", Report(13, 1).substr(0, 14));
    EXPECT_EQ("02 08 00 01 00", Report(13, 2).substr(0, 14));
}

// They go by the order of the list: a port's fault that follows raises, a station-wide point sets.
TEST_F(SignalReports, FaultSummaries) {
    runtime.m_portCount = 1;
    Load({{Yx(99), Yx(20), Yx(101), Yx(21), Yx(101, 0, 1), Yx(20, 0, 1), Yx(21, 0, 1)}, {}});
    for (const int number : {101, 20, 21}) live.SetSignal2(number, 5);
    Set({{99, 5}, {101, 5}});
    EXPECT_EQ("00 00 00 00 00", Report(13, 0));
    Set({{20, 7}, {21, 6}});
    EXPECT_EQ("00 00 00 07 06", Report(13, 0));
    Load({{Yx(20), Yx(21), Yx(99), Yx(101)}, {}});
    Walk();
    EXPECT_EQ("00 00 00 01 01", Report(13, 0));
    Set({{99, 0}, {101, 0}});
    EXPECT_EQ("00 00 00 07 06", Report(13, 0));
}

// Two records of one number share what was last reported.
TEST_F(SignalReports, LastReportedByNumber) {
    runtime.m_portCount = 1;
    Load({{Yx(150, 1), Yx(150, 2), Yx(150, 3, 1), Yx(22, 4)}, {}});
    live.SetSignal2(150, 1);
    Set({{150, 1}, {22, 1}});
    EXPECT_EQ("00 00 00 03 01 00 01 03 00 01 04 00 01", Report(11, 0));
    EXPECT_EQ("none", Report(11, 0));
}

// The copy that port 3 has of 134 stands where port 4's is.
TEST_F(SignalReports, GunSignalsByNumberAlone) {
    runtime.m_portCount = 8;
    Load({{Yx(134), Yx(135), Yx(136), Yx(137), Yx(138), Yx(135, 0, 1)}, {}});
    live.SetSignal2(135, 3);
    Set({{134, 3}, {136, 3}, {137, 3}, {138, 3}, {518, 3}});
    const char* kReports[] = {"",
                              "01 03 00 d0 07 00 03 00 d2 07 00 03 00 d3 07 00 03 00 04",
                              "none",
                              "none",
                              "04 01 00 d0 07 00 03 00 04",
                              "none",
                              "none",
                              "none",
                              "none"};
    for (int port = 1; port <= 8; ++port) EXPECT_EQ(kReports[port], Report(15, port)) << port;
}

// It is not counted: of A1_13 it is lost, of A1_11 it follows on the next ticks.
TEST_F(SignalReports, WhatDoesNotFit) {
    PointRows rows;
    for (int number = 200; number < 600; ++number) rows.yx.push_back(Yx(number, number));
    for (int i = 0; i < 101; ++i) rows.yx.push_back(Yx(137));
    runtime.m_portCount = 1;
    Load(rows);
    std::uint8_t state = 0;
    for (YxPointRecord& point : runtime.m_yxPoints) point.current = point.pointNumber == 137 ? ++state : 1;
    // `entries` of them from the point `first` on, an address of so many bytes each.
    const auto list = [](int first, int entries, int addressBytes) {
        Bytes bytes;
        for (int number = first; number < first + entries; ++number) {
            for (int i = 0; i < addressBytes; ++i)
                bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
            bytes.push_back(1);
        }
        return ' ' + ToHex(bytes);
    };
    EXPECT_EQ("00 fc 00 00 00" + list(200, 252, 3), Report(13, 0));
    EXPECT_EQ("00 00 00 a6" + list(200, 166, 2), Report(11, 0));
    EXPECT_EQ("00 00 00 a6" + list(366, 166, 2), Report(11, 0));
    EXPECT_EQ("00 00 00 44" + list(532, 68, 2), Report(11, 0));
    EXPECT_EQ("none", Report(11, 0));
    const std::string guns = Report(15, 0);  // entries of one signal
    EXPECT_EQ("00 64 00 d3 07 00 01 00 d3 ", guns.substr(0, 27));
    EXPECT_EQ(" d3 07 00 64 00 04", guns.substr(guns.size() - 18));
    EXPECT_EQ(512U - 8, (guns.size() + 1) / 3);
}

// Each with the body; that of A1_15 is cut short.
TEST_F(SignalReports, Lines) {
    runtime.m_portCount = 1;
    Load({{Yx(134, 1), Yx(135)}, {}});
    Set({{134, 1}, {135, 1}});
    EXPECT_EQ("Send_DC_A1_13: msgcode: 34517 data:\n" + kEquipmentHex +
                  "00 01 00 00 00 01 00 00 01 \n"
                  "Send_DC_A1_11: DC_A1.11  msgcode: 34515 data:\n" +
                  kEquipmentHex +
                  "00 00 00 01 01 00 01 \n"
                  "Send_DC_A1_15: msgcode: 34519 data:\n" +
                  kEquipmentHex + "00 02 00 d0 07 00 01 00 d1 07 00 01 00 \n",
              Printed([this] {
                  runtime.Send_DC_A1_13(0);
                  runtime.Send_DC_A1_11(0);
                  runtime.Send_DC_A1_15(0);
              }));
}

}  // namespace
