// A1_14, the port state, and A1_6, the idle status.
#include <gmock/gmock.h>

#include "tests/support/TestRuntime.h"

namespace {

using PortState = CStationTest;
using IdleStatus = CStationTest;

TEST_F(PortState, BodyAndLine) {
    runtime.m_sendflag = 1;
    EXPECT_EQ("Send_DC_A1_14: msgcode: 34518 data:\n02 01 00 e8 03 00 02 00 00 \n",
              Said([this] { runtime.Send_DC_A1_14(2); }));
    EXPECT_THAT(Take(), testing::ElementsAre("A1_14 " + kEquipmentHex + "02 01 00 e8 03 00 02 00 00 01"));
}

// It goes out when the code of a port changes: by the gun state, and 1 with a fault or an unknown state.
TEST_F(PortState, Changes) {
    enum EWhat { kGun, kSignal, kReport };
    const struct {
        EWhat what;
        int place;
        std::uint8_t value;
        const char* codes;  // that ports 1 and 2 report then
    } kSteps[] = {
        {kReport, 0, 1, "02 02"},
        {kGun, 2, 1, "- 03"},
        {kGun, 2, 2, "- 05"},
        {kGun, 2, 3, "- 06"},
        {kGun, 2, 4, "- 01"},
        {kGun, 2, 7, "- -"},
        {kGun, 2, 0, "- 02"},
        // The fault of a port is its own, the two of the station are everybody's; an alarm is none.
        {kSignal, 227, 2, "- 01"},
        {kSignal, 227, 0, "- 02"},
        {kSignal, 99, 1, "01 -"},
        {kSignal, 99, 0, "02 -"},
        {kSignal, 20, 1, "01 01"},
        {kSignal, 20, 0, "02 02"},
        {kSignal, 0, 1, "01 01"},
        {kSignal, 0, 0, "02 02"},
        {kSignal, 21, 1, "- -"},
        // Codes posted before are remembered over a time without reports.
        {kReport, 0, 0, "- -"},
        {kGun, 2, 1, "- -"},
        {kReport, 0, 2, "- -"},
        {kGun, 2, 0, "- -"},
        {kReport, 0, 1, "- -"},
        {kGun, 2, 1, "- 03"},
    };
    for (const auto& step : kSteps) {
        if (step.what == kGun) live.SetGunState(step.place, step.value);
        if (step.what == kSignal) live.SetSignal(step.place, step.value);
        if (step.what == kReport) runtime.m_sendflag = step.value;
        std::string codes;
        for (const int port : {1, 2}) {
            const auto posted = Posted([this, port] { runtime.Send_DC_A1_14(port); });
            codes += (port == 1 ? "" : " ") + (posted.empty() ? "-" : posted[0].substr(48, 2));
        }
        EXPECT_EQ(step.codes, codes) << &step - kSteps;
    }
}

// Signals, state and counter are those of the port, voltage and current are everybody's.
TEST_F(IdleStatus, Documents) {
    Load({{},
          {"1,'i',3,0,0,1,0,0,0", "1,'v',2,0,0,0.1,0,0,0", "1,'v of port 2',130,0,0,1,0,0,0",
           "1,'later i',3,0,0,1,65536,0,0"}});
    runtime.m_sendflag = 1;
    runtime.m_idleReportTicks = 0;
    runtime.m_idleSequence = 65534;
    for (const int port : {1, 2})
        for (int i = 0; i < 4; ++i)
            live.SetSignal(PortBase(port) + 134 + i, static_cast<std::uint8_t>(100 * port + i));
    live.SetGunState(1, 1);
    live.SetYc(2, 7500);
    live.SetYc(3, 12345);
    live.SetYc(130, 9);
    live.SetDd(0, 123456789);
    live.SetDd(32, 4294967296);
    const auto documents = [this] {
        std::vector<std::string> all = Posted([this] { runtime.SchedulerTick(); });
        all.resize(static_cast<std::size_t>(runtime.m_portCount));
        return all;
    };
    EXPECT_THAT(
        documents(),
        testing::ElementsAre(
            R"(A1_6 {"time":"1709603100","sn":65534,"type":"dcNonWork","ver":"1.0.0.20230601","equipNo":"4445464748495051",)"
            R"("portNo":1,"connFlag":100,"gunHdrFlag":101,"lockFlag":102,"ctrFlag":103,"workFlag":"0003",)"
            R"("outputV":75,"outputC":123.45,"meterVal":"12345.678900"})",
            R"(A1_6 {"time":"1709603100","sn":65535,"type":"dcNonWork","ver":"1.0.0.20230601","equipNo":"4445464748495051",)"
            R"("portNo":2,"connFlag":200,"gunHdrFlag":201,"lockFlag":202,"ctrFlag":203,"workFlag":"0002",)"
            R"("outputV":75,"outputC":123.45,"meterVal":"429496.729600"})"));
    live.SetYc(2, 3);
    live.SetYc(3, 4294967295);
    live.SetDd(32, UINT64_MAX);
    live.SetSignal(227, 1);
    EXPECT_THAT(documents().at(1),
                testing::AllOf(testing::HasSubstr("\"sn\":1,"),
                               testing::HasSubstr("\"workFlag\":\"0001\",\"outputV\":0,\"outputC\":655.35,"
                                                  "\"meterVal\":\"1844674407370955.250000\"}")));
    live.SetSignal(227, 0);
    live.SetGunState(2, 9);  // an unknown state is no fault here
    EXPECT_THAT(documents().at(1), testing::HasSubstr("\"workFlag\":\"0000\""));
    runtime.m_portCount = 1;
    EXPECT_THAT(documents().at(0),
                testing::HasSubstr("\"sn\":4,\"type\":\"dcNonWork\",\"ver\":\"1.0.0.20230601\","
                                   "\"equipNo\":\"4445464748495051\",\"portNo\":0,\"connFlag\":100,"));
}

}  // namespace
