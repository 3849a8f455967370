// Ticks while something around the process fails: locked files, a queue that goes, a zone that changes.
#include <sys/mount.h>
#include <sys/msg.h>

#include "app/MainLoop.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

struct Surroundings : CStationTest {
    Surroundings() {
        Printed([&] {
            runtime.InitSOE();
            runtime.InitYcHistoryDatabase();
        });
        Load({{"1,'A',5,20,'true',0,0"}, {}});
    }
    // What one tick waits, in milliseconds.
    int Tick() {
        FakeClock::Set(std::time(nullptr));
        Printed([&] { runtime.SchedulerTick(); });
        return static_cast<int>(FakeClock::Slept() / 1000);
    }
    void Receive() {
        Printed([&] { runtime.MsgRcvFromMain(); });
    }
};

// At the full hour eight ports write their records, and an event comes too. Records cannot be resent then,
// and are when the file has been free for a while.
TEST_F(Surroundings, OneWaitPerTick) {
    const auto events = Lock(kEventFile);
    auto history = Lock(kHistoryFile);
    runtime.m_portCount = 8;
    FakeClock::Set(FakeClock::kStart + 15 * 60);
    live.SetSignal(20, 1);
    EXPECT_EQ(1000, Tick());
    history.reset();
    EXPECT_EQ(0, Tick());
    EXPECT_EQ(8, QueryNumber(AppFile(kHistoryFile), "SELECT count(*) FROM tagYC"));
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC(portNo, sendcount) VALUES(1, 1)");
    runtime.m_sendflag = 1;
    runtime.m_datacache = 1;
    history = Lock(kHistoryFile);
    for (int tick = 0; tick < 100; ++tick) ASSERT_EQ(tick == 0 ? 1000 : 0, Tick());
    history.reset();
    EXPECT_EQ(1, runtime.m_datacache);
    Tick();
    EXPECT_EQ(0, runtime.m_datacache);
}

// Five passes lie between two polls; one that has waited leaves its poll to the next.
TEST_F(Surroundings, PassesUpToAPoll) {
    std::uint8_t counter = 0;
    const auto passes = [&] {
        SendFrame(SettingsFrame());
        runtime.m_sendflag = 0;
        int count = 0;
        for (; runtime.m_sendflag == 0 && count < 20; ++count) Printed([&] { RunPass(runtime, counter); });
        return count;
    };
    EXPECT_EQ(6, passes());
    const auto lock = Lock(kEventFile);
    live.SetSignal(20, 1);
    counter = 5;
    EXPECT_EQ(2, passes());
}

TEST_F(Surroundings, CommandsThatCannotBeRead) {
    SendText(Bytes(2053));
    SendFrame(SettingsFrame());
    Receive();
    EXPECT_EQ("zor_runtime: dropped a command of more than 2052 bytes\n", errors);
    FailNextQueueCall(EACCES);
    Receive();
    EXPECT_EQ("zor_runtime: cannot read from queue 0x1234: Permission denied\n", errors);
    Receive();
    EXPECT_EQ(1, runtime.m_sendflag);
}

// Removed, and removed and made anew by somebody else: the next poll has the queue again.
TEST_F(Surroundings, TheQueueGoes) {
    for (const bool madeAnew : {false, true}) {
        ASSERT_EQ(0, msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr));
        if (madeAnew) msgget(kQueueKey, IPC_CREAT | 0600);
        Receive();
        EXPECT_EQ(madeAnew ? "" : "zor_runtime: queue 0x1234 was removed\n", errors);  // once an hour
        EXPECT_TRUE(SendFrame(SettingsFrame()));
        runtime.m_sendflag = 0;
        Receive();
        EXPECT_EQ(1, runtime.m_sendflag);
    }
}

// A zone that is set while the process runs counts from the next second on, before anything else.
TEST_F(Surroundings, TheZoneChanges) {
    if (mount("none", "/etc", "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "no private namespace";
    const std::string before = std::getenv("TZ");
    Tick();
    setenv("TZ", "UTC-2", 1);
    WriteText("/etc/localtime", "new");
    FakeClock::Set(FakeClock::kStart + 1);
    live.SetSignal(20, 1);
    Tick();
    EXPECT_THAT(QueryRows(AppFile(kEventFile), "SELECT timestamp FROM tagSOE WHERE id = 2"),
                testing::ElementsAre("2024-03-05 03:45:01"));
    umount("/etc");
    setenv("TZ", before.c_str(), 1);
    tzset();
}

}  // namespace
