// The real program, from its start to its first messages.
#include <gmock/gmock.h>
#include <sys/msg.h>
#include <sys/shm.h>

#include <filesystem>
#include <random>
#include <regex>

#include "System/AppFiles.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kRule = std::string(60, '*') + "\n";
// Everything up to the configuration.
const std::string kFirstLines = Line("CRuntimeData", "runtime:IPC Creater Succuess 104!\n") + kRule +
                                "*               Process Name    : zor_runtime              *\n";
const std::string kLost = Line("MsgSndToMain", "send failed 002!");

class CStation : public testing::Test {
  protected:
    CStation() {
        CleanStation();
        MakeConfig(2);
    }
    void TearDown() override { CleanStation(); }

    // Output since the last call: source lines masked, build date and time set to something known.
    std::string Output() {
        static const std::regex date("Compile Date    : \\w{3} [ 0-9]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d ");
        return std::regex_replace(Masked(process.TakeOutput()), date,
                                  "Compile Date    : Aug 30 2023 10:44:12 ");
    }

    CStationProcess process;
};
using FirstPath = CStation;
using Trouble = CStation;

const std::string kEquipment = "51 50 49 48 47 46 45 44";

std::string A1_14(int port, int code, const std::string& equipment = kEquipment) {
    return "16 00 86 d6 00 00 " + equipment + " 0" + std::to_string(port) + " 01 00 e8 03 00 0" +
           std::to_string(code) + " 00 00 01";
}

// The snapshot of a station without signal points.
std::string A1_13(int port, const std::string& equipment = kEquipment) {
    return "11 00 86 d5 00 00 " + equipment + " 0" + std::to_string(port) + " 00 00 00 00";
}

std::string Lines(const std::string& operation, const std::vector<std::string>& texts) {
    std::string lines;
    for (const std::string& text : texts) lines += Line(operation, text);
    return lines;
}

TEST_F(FirstPath, StartUpLines) {
    process.RunPasses(1);
    const std::string opened = "You have opened a sqlite3 database named zorpointsetting.db successfully!";
    const std::string path = "/mnt/nandflash/app/zorpointsetting.db";
    EXPECT_EQ(
        kFirstLines +
            Lines("GetPort", {"You have opened a sqlite3 database named zorconfig.db successfully!",
                              "station=bench", "chargport_number=2"}) +
            "*               Process Version : V3.00  with 2 port       *\n"
            "*               Compile Date    : Aug 30 2023 10:44:12     *\n" +
            kRule + path + "\n" +
            Lines("Load", {opened, "database:DC", "init YC realdatabase scussessful!"}) +
            Lines("InitPointSettingYC", {path, opened, "sqlite3_get_table Fail:\n"}) +
            Lines("InitPointSettingYX", {path, opened, "sqlite3_get_table Fail:\n"}) +
            Lines("InitSOE", {"You have opened a sqlite3 database named zorsoe.db successfully!",
                              "Table tagErrMsg Not Exists!", "Line: #, sqlite_master: nRow = 0 nColumn = 0\n",
                              "Create Table tagSOE!"}) +
            "/mnt/nandflash/app/zorycdata.db\nzorycdata.db is not exist!!!\n" +
            Lines("InitYcHistoryDatabase", {"You have opened zorycdata.db successfully!"}),
        std::regex_replace(Output(), std::regex("Line: [0-9]+"), "Line: #"));
    EXPECT_EQ("", process.Errors());
    process.RunPasses(20);
    EXPECT_EQ("", Output());
    EXPECT_EQ(0U, Waiting());
}

TEST_F(FirstPath, SettingsToPortStates) {
    CLiveValues live;
    live.SetEquipment({0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x50, 0x51});
    live.SetGunState(2, 1);
    SendFrame(SettingsFrame());
    process.RunPasses(5);
    EXPECT_EQ(1U, Waiting());
    process.RunPasses(1);
    EXPECT_EQ(0U, Waiting());  // polled on the sixth pass, acted on from the next
    EXPECT_THAT(Output(), EndsWith(Line("MsgRcvFromMain", "m_sendflag:1\n")));

    // All is posted on the next pass, and one message leaves per pass.
    const std::vector<std::string> expected = {A1_13(1), A1_14(1, 2), A1_14(2, 3)};
    for (const std::string& frame : expected) {
        process.RunPasses(1);
        const std::vector<Received> sent = ReadAll();
        ASSERT_EQ(1U, sent.size());
        EXPECT_EQ(process.Pid(), sent[0].sender);
        EXPECT_EQ(frame, ToHex(sent[0].frame));
    }
    EXPECT_THAT(Output(),
                EndsWith(Line("Send_DC_A1_14", "msgcode: 34518 data:") + "02 01 00 e8 03 00 03 00 00 \n"));

    live.SetSignal(99, 1);
    process.RunPasses(2);
    EXPECT_THAT(ReadFrames(), ElementsAre(A1_14(1, 1)));
    SendFrame(SettingsFrame({999}));
    process.RunPasses(6);
    live.SetSignal(99, 0);
    process.RunPasses(6);
    EXPECT_THAT(ReadFrames(), IsEmpty());
    EXPECT_EQ(CStationProcess::kStart + 2, process.Time());
}

TEST_F(FirstPath, RandomCommandsAreSurvived) {
    std::mt19937 random(2);
    for (int i = 0; i < 10000; ++i) {
        Bytes text(random() % 2053);
        for (std::uint8_t& byte : text) byte = static_cast<std::uint8_t>(random());
        while (!SendText(text)) process.RunPasses(6);
    }
    while (Waiting() > ReadAll().size()) process.RunPasses(60);
    Output();
    SendFrame(SettingsFrame());
    process.RunPasses(9);
    EXPECT_THAT(Output(), HasSubstr(Line("MsgRcvFromMain", "m_sendflag:1\n")));
    EXPECT_THAT(ReadFrames(), Contains(StartsWith("16 00 86 d6 00 00 ")));
}

TEST_F(Trouble, FullQueueCostsMessagesOnly) {
    CLiveValues live;
    SendFrame(SettingsFrame());
    process.RunPasses(6);
    Output();
    LimitQueue(16384);
    int gun = 0;
    const auto changeOnEveryPass = [&](int passes) {
        for (int i = 0; i < passes; ++i) {
            live.SetGunState(1, static_cast<std::uint8_t>(gun = 1 - gun));
            process.RunPasses(1);
        }
    };
    changeOnEveryPass(2000);
    Output();
    const long before = process.ResidentKb();
    changeOnEveryPass(10000);
    EXPECT_LE(process.ResidentKb(), before + 64);
    const std::string output = Output();
    std::size_t lost = 0;
    for (std::size_t at = 0; (at = output.find(kLost, at)) != std::string::npos; ++at) ++lost;
    EXPECT_EQ(10000U, lost);
    EXPECT_EQ(7U, ReadAll().size());
    changeOnEveryPass(3);
    EXPECT_EQ(3U, ReadAll().size());
}

TEST_F(Trouble, NoQueue) {
    process.FailMsgget(ENOSPC);
    process.RunPasses(1);
    EXPECT_THAT(Output(), StartsWith(kRule));
    process.RunPasses(20);
    EXPECT_EQ("", Output());
    EXPECT_THAT(process.Errors(),
                testing::MatchesRegex("open msg 1234 failed.\n"
                                      "zor_runtime: cannot read from queue 0x1234: [^\n]*\n"));
}

TEST_F(Trouble, NoSharedMemory) {
    ASSERT_LE(0, shmget(CShmLayout::kKey, 4096, IPC_CREAT | 0660));
    SendFrame(SettingsFrame());
    process.RunPasses(9);
    EXPECT_EQ("libcshm: segment 0x5A53: too small\n", process.Errors());
    const std::string none = ToHex(Bytes(8));
    EXPECT_THAT(ReadFrames(), ElementsAre(A1_13(1, none), A1_14(1, 2, none), A1_14(2, 2, none)));
}

TEST_F(Trouble, HugeHistoryIsKept) {
    constexpr std::uintmax_t kSize = 5ULL << 30;  // beyond what 32 bits say
    process.RunPasses(1);
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC (portNo) VALUES (1)");
    std::filesystem::resize_file(AppFile(kHistoryFile), kSize);
    CStationProcess again;
    again.RunPasses(1);
    EXPECT_EQ(kSize, std::filesystem::file_size(AppFile(kHistoryFile)));
}

TEST_F(Trouble, ConfigurationThatCannotBeRead) {
    const std::function<void()> makers[] = {
        [] {},
        [] { WriteText(AppFile(kConfigFile), "no database at all, but long enough to be looked at twice"); },
        [] { RunSql(AppFile(kConfigFile), "CREATE TABLE tagSystem (a, b)", "XYZ.0000"); },
    };
    for (const std::function<void()>& make : makers) {
        CleanStation();
        make();
        CStationProcess fresh;
        fresh.RunPasses(7);
        EXPECT_THAT(fresh.TakeOutput(), testing::AllOf(HasSubstr("read tagSystem error!: "),
                                                       HasSubstr("V3.00  with 1 port       *")));
    }
}

TEST_F(Trouble, ConfigurationThatCannotBeOpened) {
    for (const bool directoryInstead : {false, true}) {
        std::filesystem::remove_all(kAppDirectory);
        if (directoryInstead) std::filesystem::create_directories(AppFile(kConfigFile));
        CStationProcess fresh;
        EXPECT_EQ(0, fresh.RunToEnd());
        EXPECT_EQ(kFirstLines, Masked(fresh.TakeOutput()));
        EXPECT_EQ("Can't open database: unable to open database file\n", fresh.Errors());
    }
}

}  // namespace
