// The real program: what it says at its start, and what it lives through.
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>

#include "System/AppFiles.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

class CStartUp : public testing::Test, CCleanBothEnds {
  protected:
    CStartUp() { MakeConfig(2); }

    CStationProcess process;
};
using StartUp = CStartUp;

TEST_F(StartUp, Lines) {
    process.RunPasses(1);
    const std::regex date("\\w{3} [ 0-9]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d ");
    const std::string said = std::regex_replace(Plain(process.TakeOutput()), date, "<date and time>");
    EXPECT_EQ(R"(CRuntimeData: runtime:IPC Creater Succuess 104!\n
************************************************************
*               Process Name    : zor_runtime              *
GetPort: You have opened a sqlite3 database named zorconfig.db successfully!
GetPort: station=bench
GetPort: chargport_number=2
*               Process Version : V3.00  with 2 port       *
*               Compile Date    : <date and time>    *
************************************************************
/mnt/nandflash/app/zorpointsetting.db
)",
              said.substr(0, said.find("Load: ")));
    std::string operations;  // whose lines have tests of their own
    const std::regex operation("(^|\n)(\\w+): ");
    for (std::sregex_iterator at(said.begin(), said.end(), operation), end; at != end; ++at)
        if (operations.find((*at)[2]) == std::string::npos) operations += (*at)[2].str() + ' ';
    EXPECT_EQ(
        "CRuntimeData GetPort Load InitPointSettingYC InitPointSettingYX InitSOE InitYcHistoryDatabase ",
        operations);
    process.RunPasses(20);
    EXPECT_EQ("", process.TakeOutput() + process.Errors());
    EXPECT_EQ(CStationProcess::kStart + 2, process.Time());
}

// Whoever reads the lines may go away.
TEST_F(StartUp, BrokenPipeEndsNothing) {
    process.RunPasses(1);
    kill(process.Pid(), SIGPIPE);
    process.RunPasses(1);
}

TEST_F(StartUp, FullQueueCostsMessagesOnly) {
    CLiveValues live;
    SendFrame(SettingsFrame());
    process.RunPasses(6);
    LimitQueue(16384);
    int gun = 0;
    const auto changeOnEveryPass = [&](int passes) {
        for (int i = 0; i < passes; ++i) {
            live.SetGunState(1, static_cast<std::uint8_t>(gun = 1 - gun));
            process.RunPasses(1);
        }
    };
    changeOnEveryPass(2000);
    process.TakeOutput();
    const long before = process.PrivateKb();
    changeOnEveryPass(10000);
    EXPECT_LE(process.PrivateKb(), before + 64);
    const std::regex lost("MsgSndToMain\\.\\d+: send failed 002!");
    const std::string output = process.TakeOutput();
    EXPECT_EQ(10000, std::distance(std::sregex_iterator(output.begin(), output.end(), lost), {}));
    EXPECT_EQ(7U, ReadAll().size());
    changeOnEveryPass(3);
    EXPECT_EQ(3U, ReadAll().size());
}

TEST_F(StartUp, BurstOfEventsInOneTick) {
    constexpr int kPoints = 612;
    std::filesystem::remove(AppFile(kConfigFile));
    std::vector<std::string> rows = YxRows(kPoints);
    std::reverse(rows.begin(), rows.end());  // list order is not that of the numbers
    MakePoints({rows, {}});
    CLiveValues live;
    process.RunPasses(1);
    for (int point = 0; point < kPoints; ++point) live.SetSignal(point, 1);
    process.RunPasses(1);
    std::vector<std::string> expected = {"1|SOE database init!|0"};
    for (int point = kPoints - 1; point >= 0; --point)
        expected.push_back(std::to_string(expected.size() + 1) + "|[Fault]Point " + std::to_string(point) +
                           " 0 -> 1|1");
    EXPECT_EQ(expected, QueryRows(AppFile(kEventFile), "SELECT id,event,value FROM tagSOE ORDER BY id"));
    EXPECT_LE(1U, process.Syncs());
    EXPECT_GE(5U, process.Syncs());
    // Those of points 297, 425 and 553.
    EXPECT_EQ(3, QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagErrMsg"));
    process.RunPasses(1);
    EXPECT_EQ(0U, process.FileCalls());
    EXPECT_EQ("", process.Errors());
}

TEST_F(StartUp, HugeHistoryIsKept) {
    constexpr std::uintmax_t kSize = 5ULL << 30;  // beyond what 32 bits say
    process.RunPasses(1);
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC (portNo) VALUES (1)");
    std::filesystem::resize_file(AppFile(kHistoryFile), kSize);
    CStationProcess again;
    again.RunPasses(1);
    EXPECT_EQ(kSize, std::filesystem::file_size(AppFile(kHistoryFile)));
}

TEST_F(StartUp, ConfigurationThatCannotBeOpened) {
    std::filesystem::remove_all(kAppDirectory);
    EXPECT_EQ(0, process.RunToEnd());
    // Everything up to the configuration.
    EXPECT_EQ("CRuntimeData: runtime:IPC Creater Succuess 104!\\n\n" + std::string(60, '*') +
                  "\n*               Process Name    : zor_runtime              *\n",
              Plain(process.TakeOutput()));
    EXPECT_EQ("Can't open database: unable to open database file\n", process.Errors());
}

}  // namespace
