// The real program: what it says at its start, and what it lives through.
#include <csignal>
#include <filesystem>
#include <regex>

#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

struct StartUp : testing::Test, CleanBothEnds {
    StartUp() { MakeConfig(2); }

    CStationProcess process;
};

TEST_F(StartUp, Lines) {
    process.RunPasses(1);
    const std::regex date("\\w{3} [ 0-9]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d ");
    const std::string said = std::regex_replace(Plain(process.TakeOutput()), date, "<date and time>");
    EXPECT_EQ(R"(CRuntimeData: runtime:IPC Creater Succuess 104!⏎
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
    process.RunPasses(20);
    EXPECT_EQ("", process.TakeOutput() + process.Errors());
    EXPECT_EQ(CStationProcess::kStart + 2, process.Time());
}

// Passes in which nothing is due allocate nothing; when the snapshots fall due, they do.
TEST_F(StartUp, QuietPassesAllocateNothing) {
    MakePoints({YxRows(612), {"1,'v',5,0,100,1,0,0,0"}});
    SendFrame(SettingsFrame());
    process.RunPasses(100);
    process.Plan().call = ECall::Malloc;
    process.RunPasses(400);
    EXPECT_EQ(0U, process.Plan().calls);
    process.RunPasses(200);
    EXPECT_LT(0U, process.Plan().calls);
}

// Whoever reads the lines may go away.
TEST_F(StartUp, BrokenPipeEndsNothing) {
    process.RunPasses(1);
    kill(process.Pid(), SIGPIPE);
    process.RunPasses(1);
}

TEST_F(StartUp, HugeHistoryIsKept) {
    constexpr std::uintmax_t kSize = 5ULL << 30;  // beyond what 32 bits say
    process.RunPasses(1);
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC (portNo) VALUES (1)");
    std::filesystem::resize_file(AppFile(kHistoryFile), kSize);
    CStationProcess().RunPasses(1);
    EXPECT_EQ(kSize, std::filesystem::file_size(AppFile(kHistoryFile)));
}

TEST_F(StartUp, ConfigurationThatCannotBeOpened) {
    std::filesystem::remove_all(kAppDirectory);
    EXPECT_EQ(0, process.Run(1));
    EXPECT_EQ("Can't open database: unable to open database file\n", process.Errors());
}

}  // namespace
