// A1_14, the port state, and A1_6, the idle status.
#include "tests/support/TestRuntime.h"

namespace {

using PortState = CStationTest;
using IdleStatus = CStationTest;
using testing::HasSubstr;

// It goes out when the code of a port changes: by the gun state of port 2, and 1 with a fault or an unknown
// state. The fault of a port is its own, the two of the station are everybody's, an alarm is none. Codes
// posted before are remembered over a time without reports. A step is what is set, and the codes that ports 1
// and 2 report then.
TEST_F(PortState, Changes) {
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
            for (const int port : {1, 2}) {
                const std::string code = step.substr(colon + (port == 1 ? 2 : 5), 2);
                const std::string body = '0' + std::to_string(port) + " 01 00 e8 03 00 " + code + " 00 00 ";
                const std::string said = Printed([&] { runtime.Send_DC_A1_14(port); });
                EXPECT_EQ(code == "--" ? "" : "Send_DC_A1_14: msgcode: 34518 data:\n" + body + '\n', said)
                    << step;
                for (const std::string& message : Take())
                    EXPECT_EQ("A1_14 " + kEquipmentHex + body + "01", message);
            }
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
    const auto documents = [this] { return Posted([this] { runtime.SchedulerTick(); }); };
    const auto first = documents();
    EXPECT_EQ(
        R"(A1_6 {"time":"1709603100","sn":65534,"type":"dcNonWork","ver":"1.0.0.20230601","equipNo":"4445464748495051",)"
        R"("portNo":1,"connFlag":100,"gunHdrFlag":101,"lockFlag":102,"ctrFlag":103,"workFlag":"0003",)"
        R"("outputV":75,"outputC":123.45,"meterVal":"12345.678900"})",
        first.at(0));
    EXPECT_THAT(first.at(1), HasSubstr(R"("sn":65535,)"));
    EXPECT_THAT(
        first.at(1),
        HasSubstr(
            R"("portNo":2,"connFlag":200,"gunHdrFlag":201,"lockFlag":202,"ctrFlag":203,"workFlag":"0002",)"
            R"("outputV":75,"outputC":123.45,"meterVal":"429496.729600"})"));
    live.SetYc(2, 3);
    live.SetYc(3, 4294967295);
    live.SetDd(32, UINT64_MAX);
    live.SetSignal(227, 1);
    const std::string second = documents().at(1);
    EXPECT_THAT(second, HasSubstr(R"("sn":1,)"));
    EXPECT_THAT(second,
                HasSubstr(R"("0001","outputV":0,"outputC":655.35,"meterVal":"1844674407370955.250000"})"));
    live.SetSignal(227, 0);
    live.SetGunState(2, 9);  // an unknown state is no fault here
    EXPECT_THAT(documents().at(1), HasSubstr(R"("workFlag":"0000")"));
    runtime.m_portCount = 1;
    EXPECT_THAT(documents().at(0), HasSubstr(R"("portNo":0,"connFlag":100,"gunHdrFlag":101,)"));
}

}  // namespace
