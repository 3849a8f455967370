// zorctl status: with a station, without one, and with parts of one.
#include <gmock/gmock.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <regex>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

// A process of the given name, for as long as this object lives. A child, because what an emulator shows of
// its own process is not the truth.
class CNamed {
  public:
    explicit CNamed(const char* name) {
        int named[2] = {-1, -1};
        EXPECT_EQ(0, pipe(named));
        m_process = fork();
        if (m_process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            prctl(PR_SET_NAME, name);
            close(named[0]);
            close(named[1]);
            for (;;) pause();
        }
        close(named[1]);
        char end = 0;
        EXPECT_EQ(0, read(named[0], &end, 1));
        close(named[0]);
    }
    ~CNamed() {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    CNamed(const CNamed&) = delete;
    CNamed& operator=(const CNamed&) = delete;
    std::string Id() const { return std::to_string(m_process); }

  private:
    pid_t m_process = -1;
};

// `text` with the ids of this process and of `other` as OWN and OTHER, and the times that the kernel keeps,
// which follow `before`, as TIME.
std::string Masked(std::string text, const CNamed& other, const std::string& before) {
    text = std::regex_replace(text, std::regex("\\b" + std::to_string(getpid()) + "\\b"), "OWN");
    text = std::regex_replace(text, std::regex("\\b" + other.Id() + "\\b"), "OTHER");
    return std::regex_replace(text, std::regex('(' + before + ")[-0-9]{10} [:0-9]{8}"), "$1TIME");
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
    EXPECT_THAT(Masked(text.out, named, "last sent "),
                testing::MatchesRegex(
                    "process   running, OTHER \\(zor_runtime\\)\n"
                    "queue     0x1234, 3 messages \\(1 to zor_main, 2 from it\\), 6156 of [0-9]+ bytes\n"
                    "          last sent TIME by OWN \\([^)]+\\)\n"
                    "          nothing taken yet\n"
                    "memory    0x5A53, 1229664 bytes, version 1, made by OWN \\([^)]+\\)\n"
                    "          [0-9]+ attached: .*OTHER \\(zor_runtime\\).*\n"
                    "settings  2 ports, 23 status points, 65 telemetry points\n"
                    "event     last 2024-03-05 09:45:00 \\[Normal\\]Gun connected 0 -> 1, id 2\n"
                    "history   last record 2024-03-05 00:00:02; pending: port 1: 2, port 2: 1\n"));
    EXPECT_EQ(3UL, Waiting());
    EXPECT_THAT(
        Call("status --json").out,
        testing::HasSubstr("\"ports\":2,\"lastEvent\":{\"id\":2,\"timestamp\":\"2024-03-05 09:45:00\","
                           "\"event\":\"[Normal]Gun connected 0 -> 1\"},"
                           "\"pending\":{\"1\":2,\"2\":1},\"troubles\":[]}\n"));
}

TEST_F(ZorctlStatusOfStation, OnePartMissing) {
    ASSERT_EQ(0, Call("init --ports 1 /mnt/nandflash/app").exit);
    Capture([&] { runtime.InitSOE(); });
    RunSql(AppFile(kHistoryFile), kCreateYc);
    const auto trouble = [] {
        const Outcome outcome = Call("status");
        EXPECT_EQ(outcome.exit == 0, outcome.out.find("trouble ") == std::string::npos);
        return outcome.exit == 0 ? "" : outcome.out.substr(outcome.out.find("trouble ") + 10);
    };
    const CNamed other("zor_runtime2");
    EXPECT_EQ("zor_runtime is not running\n", trouble());
    const CNamed named("zor_runtime");
    EXPECT_EQ("", trouble());
    EXPECT_THAT(Call("status").out, testing::HasSubstr("history   no record; pending: port 0: 0\n"));
    {
        const CNamed again("zor_runtime");
        EXPECT_EQ("zor_runtime is running more than once\n", trouble());
    }
    RunSql(AppFile(kHistoryFile), "DROP TABLE tagYC");
    EXPECT_EQ("/mnt/nandflash/app/zorycdata.db: no such table: tagYC\n", trouble());
    RunSql(AppFile(kHistoryFile), kCreateYc);
    LimitQueue(kMessageTextSize - 1);
    EXPECT_EQ("queue full: nobody takes messages\n", trouble());
    msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
    EXPECT_EQ("no queue\n", trouble());
}

}  // namespace
