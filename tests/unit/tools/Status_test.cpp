// zorctl status: with a station, without one, and with parts of one.
#include <gmock/gmock.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cstdio>
#include <regex>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

// This process stands in for the one that is looked for.
class CNamed {
  public:
    explicit CNamed(const char* name) {
        prctl(PR_GET_NAME, m_before);
        prctl(PR_SET_NAME, name);
    }
    ~CNamed() { prctl(PR_SET_NAME, m_before); }
    CNamed(const CNamed&) = delete;
    CNamed& operator=(const CNamed&) = delete;

  private:
    char m_before[16] = {};
};

// `text` with this process's id as PID and all times of the real clock, as the kernel keeps them, as TIME.
std::string Masked(std::string text, const std::string& kernelTime) {
    const std::string pid = std::to_string(getpid());
    text = std::regex_replace(text, std::regex("\\b" + pid + "\\b"), "PID");
    return std::regex_replace(text, std::regex(kernelTime), "$1TIME");
}

using ZorctlStatus = CEmptyStationTest;

TEST_F(ZorctlStatus, WithoutAStation) {
    const Outcome text = Call("status");
    EXPECT_EQ(1, text.exit);
    EXPECT_EQ(
        "trouble   zor_runtime is not running\n"
        "          no queue\n"
        "          no shared memory\n"
        "          /mnt/nandflash/app/zorconfig.db: not there\n"
        "          /mnt/nandflash/app/zorpointsetting.db: not there\n"
        "          /mnt/nandflash/app/zorsoe.db: not there\n"
        "          /mnt/nandflash/app/zorycdata.db: not there\n",
        text.out);
    const Outcome json = Call("status --json /nowhere");
    EXPECT_EQ(1, json.exit);
    EXPECT_EQ(0U,
              json.out.find(R"({"processes":[],"queue":null,"memory":null,"lastEvent":null,"pending":null,)"
                            R"("troubles":["zor_runtime is not running","no queue","no shared memory",)"
                            R"("/nowhere/zorconfig.db: not there",)"))
        << json.out;
    EXPECT_LT(msgget(kQueueKey, 0), 0);
    EXPECT_LT(shmget(CShmLayout::kKey, 0, 0), 0);
    EXPECT_NE(0, access(AppFile(kConfigFile).c_str(), F_OK));
}

using ZorctlStatusOfStation = CStationTest;

TEST_F(ZorctlStatusOfStation, Whole) {
    const CNamed named("zor_runtime");
    ASSERT_EQ(0, Call("init --ports 2 /mnt/nandflash/app").exit);
    Capture([&] {
        runtime.InitSOE();
        runtime.InsertSOE(1, 134, 0, "[Normal]Gun connected 0 -> 1");
    });
    RunSql(AppFile(kHistoryFile), kCreateYc);
    RunSql(AppFile(kHistoryFile),
           "INSERT INTO tagYC(portNo, sendcount, timestamp) VALUES (1,0,'2024-03-04 00:00:02'),"
           "(1,1,'a'),(2,5,'b'),(1,6,'c'),(1,2,'2024-03-05 00:00:02')");
    runtime.PostMsg(34518, "\x01", 1);
    Capture([&] { runtime.DrainOutbound(); });
    ASSERT_TRUE(SendFrame(SettingsFrame()));
    ASSERT_TRUE(SendFrame(SettingsFrame()));

    const Outcome text = Call("status");
    EXPECT_EQ(0, text.exit) << text.out;
    EXPECT_THAT(Masked(text.out, "(last sent )[-0-9]{10} [:0-9]{8}"),
                testing::MatchesRegex(
                    "process   running, PID \\(zor_runtime\\)\n"
                    "queue     0x1234, 3 messages \\(1 to zor_main, 2 from it\\), 6156 of [0-9]+ bytes\n"
                    "          last sent TIME by PID \\(zor_runtime\\)\n"
                    "          nothing taken yet\n"
                    "memory    0x5A53, 1229664 bytes, version 1, made by PID \\(zor_runtime\\)\n"
                    "          [0-9]+ attached: PID \\(zor_runtime\\)\n"
                    "settings  2 ports, 23 status points, 65 telemetry points\n"
                    "event     last 2024-03-05 09:45:00 \\[Normal\\]Gun connected 0 -> 1, id 2\n"
                    "history   last record 2024-03-05 00:00:02; pending: port 1: 2, port 2: 1\n"));
    EXPECT_EQ(3UL, Waiting());

    const Outcome json = Call("status --json");
    EXPECT_EQ(0, json.exit);
    EXPECT_THAT(Masked(json.out, "(time\":\")[-0-9]{10} [:0-9]{8}"),
                testing::MatchesRegex(
                    "\\{\"processes\":\\[PID\\],\"queue\":\\{\"messages\":3,\"toMain\":1,\"fromMain\":2,"
                    "\"bytes\":6156,\"maxBytes\":[0-9]+,\"lastSent\":\\{\"pid\":PID,\"time\":\"TIME\"\\},"
                    "\"lastTaken\":null\\},\"memory\":\\{\"size\":1229664,\"version\":1,\"creator\":PID,"
                    "\"attached\":[0-9]+,\"processes\":\\[\\{\"pid\":PID,\"name\":\"zor_runtime\"\\}\\]\\},"
                    "\"ports\":2,\"lastEvent\":\\{\"id\":2,\"timestamp\":\"2024-03-05 09:45:00\","
                    "\"event\":\"\\[Normal\\]Gun connected 0 -> 1\"\\},\"pending\":\\{\"1\":2,\"2\":1\\},"
                    "\"troubles\":\\[\\]\\}\n"));
}

TEST_F(ZorctlStatusOfStation, OnePartMissing) {
    const CNamed named("zor_runtime");
    ASSERT_EQ(0, Call("init --ports 1 /mnt/nandflash/app").exit);
    Capture([&] { runtime.InitSOE(); });
    RunSql(AppFile(kHistoryFile), kCreateYc);
    const auto trouble = [] {
        const Outcome outcome = Call("status");
        EXPECT_EQ(outcome.exit == 0, outcome.out.find("trouble ") == std::string::npos);
        return outcome.exit == 0 ? "" : outcome.out.substr(outcome.out.find("trouble ") + 10);
    };
    EXPECT_EQ("", trouble());
    EXPECT_THAT(Call("status").out, testing::HasSubstr("history   no record; pending: port 0: 0\n"));
    {
        const CNamed other("zor_runtime2");
        EXPECT_EQ("zor_runtime is not running\n", trouble());
    }
    RunSql(AppFile(kHistoryFile), "DROP TABLE tagYC");
    EXPECT_EQ("zorycdata.db: no such table: tagYC\n", trouble());
    RunSql(AppFile(kHistoryFile), kCreateYc);
    WriteText(AppFile(kConfigFile),
              "another key would look like this: nothing that can be read as a database");
    EXPECT_THAT(trouble(), testing::StartsWith("zorconfig.db: file is "));
    std::remove(AppFile(kConfigFile).c_str());
    MakeConfig(1);
    EXPECT_EQ("", trouble());
    msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
    EXPECT_EQ("no queue\n", trouble());
}

}  // namespace
