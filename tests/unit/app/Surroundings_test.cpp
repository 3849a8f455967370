// Ticks while something around the process fails: locked files, a queue that goes, a zone that changes.
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/stat.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "app/MainLoop.h"
#include "ipc/Commands.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::HasSubstr;

class CSurroundings : public CStationTest {
  protected:
    CSurroundings() {
        Printed([&] {
            runtime.InitSOE();
            runtime.InitYcHistoryDatabase();
        });
    }
    // What one tick waits, in milliseconds.
    int Tick() {
        FakeClock::Set(std::time(nullptr));
        Printed([&] { runtime.SchedulerTick(); });
        return static_cast<int>(FakeClock::Slept() / 1000);
    }
    void Load(const std::vector<std::string>& yx) {
        MakePoints({yx, {}});
        Printed([&] { runtime.InitPointSettingYX(); });
    }
    static int Records() { return QueryNumber(AppFile(kHistoryFile), "SELECT count(*) FROM tagYC"); }
    static std::unique_ptr<CForeignLock> Lock(const char* file) {
        return std::make_unique<CForeignLock>(AppFile(file), CForeignLock::kWriter);
    }
};
using Surroundings = CSurroundings;

// At the full hour eight ports write their records, and an event comes too.
TEST_F(Surroundings, OneWaitPerTick) {
    constexpr std::time_t kFullHour = FakeClock::kStart + 15 * 60;
    const struct {
        const char* name;
        bool events, history;
        int waits[3];  // of three ticks
        int records;
    } kCases[] = {
        {"history", false, true, {1000, 0, 0}, 0},
        {"events", true, false, {1000, 0, 0}, 8},
        {"both", true, true, {1000, 1000, 0}, 0},
    };
    runtime.m_portCount = 8;
    Load({"1,'A',5,20,'true',0,0"});
    std::uint8_t state = 1;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        FakeClock::Set(kFullHour - 10);
        Tick();
        runtime.SetLastHour(9);
        RunSql(AppFile(kHistoryFile), "DELETE FROM tagYC");
        auto events = c.events ? Lock(kEventFile) : nullptr;
        auto history = c.history ? Lock(kHistoryFile) : nullptr;
        FakeClock::Set(kFullHour);
        live.SetSignal(20, state);
        state = 1 - state;
        for (const int wait : c.waits) EXPECT_EQ(wait, Tick());
        events.reset();
        history.reset();
        EXPECT_EQ(c.records, Records());
    }
}

// A tick that has waited leaves a command to the next one.
TEST_F(Surroundings, CommandsWaitForATickThatDidNot) {
    Load({"1,'A',5,20,'true',0,0"});
    const auto lock = Lock(kEventFile);
    SendFrame(SettingsFrame());
    std::uint8_t passes = 5;
    live.SetSignal(20, 1);
    Printed([&] { RunPass(runtime, passes); });
    EXPECT_EQ(0, runtime.m_sendflag);
    Printed([&] { RunPass(runtime, passes); });
    EXPECT_EQ(1, runtime.m_sendflag);
}

// Detection goes on while records cannot be resent, and they are when the file has been free for a while.
TEST_F(Surroundings, ResendingRestsAfterALock) {
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC(portNo, sendcount) VALUES(1, 1)");
    runtime.m_sendflag = 1;
    runtime.m_datacache = 1;
    auto lock = Lock(kHistoryFile);
    EXPECT_EQ(1000, Tick());
    int waited = 0;
    for (int i = 0; i < 99; ++i) waited += Tick();
    EXPECT_EQ(0, waited);
    lock.reset();
    EXPECT_EQ(1, runtime.m_datacache);
    Tick();
    EXPECT_EQ(0, runtime.m_datacache);
}

TEST_F(Surroundings, CommandsThatAreTooLong) {
    struct {
        long type = kTypeFromMain;
        char text[2100] = {};
    } tooLong;
    const int queue = msgget(kQueueKey, 0);
    ASSERT_EQ(0, msgsnd(queue, &tooLong, 2053, 0));
    ASSERT_EQ(0, msgsnd(queue, &tooLong, sizeof tooLong.text, 0));
    SendFrame(SettingsFrame());
    const char* const kErrors[] = {"zor_runtime: dropped a command of more than 2052 bytes\n", "", ""};
    for (const char* error : kErrors) {
        EXPECT_EQ(0, runtime.m_sendflag);
        Printed([&] { runtime.MsgRcvFromMain(); });
        EXPECT_EQ(error, errors);
    }
    EXPECT_EQ(1, runtime.m_sendflag);
}

// Removed, and removed and made anew by somebody else: the next poll has the queue again, in both directions.
TEST_F(Surroundings, TheQueueGoes) {
    int said = 0;
    for (const bool madeAnew : {false, true, true}) {
        ASSERT_EQ(0, msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr));
        if (madeAnew) msgget(kQueueKey, IPC_CREAT | 0600);
        runtime.PostMsg(34518, "", 1);
        EXPECT_THAT(Printed([&] { Drain(1); }), HasSubstr("send failed 002!"));
        Printed([&] { runtime.MsgRcvFromMain(); });
        if (errors == "zor_runtime: queue 0x1234 was removed\n") ++said;
        const int queue = msgget(kQueueKey, 0);
        ASSERT_LE(0, queue);
        runtime.m_sendflag = 0;
        SendFrame(SettingsFrame());
        Printed([&] { runtime.MsgRcvFromMain(); });
        EXPECT_EQ(1, runtime.m_sendflag);
        runtime.PostMsg(34518, "", 1);
        Drain(1);
        EXPECT_EQ(1U, ReadAll().size());
    }
    EXPECT_EQ(1, said);
    // Another failure leaves it alone.
    FailNextQueueCall(EACCES);
    Printed([&] { runtime.MsgRcvFromMain(); });
    EXPECT_EQ("zor_runtime: cannot read from queue 0x1234: Permission denied\n", errors);
}

// The system's zone file, so many hours east of Greenwich.
void SetZone(int hours) {
    std::string file = "TZif" + std::string(32, '\0') + std::string("\0\0\0\1\0\0\0\4", 8);
    const std::int32_t offset = hours * 3600;
    for (const int shift : {24, 16, 8, 0}) file += static_cast<char>(offset >> shift);
    WriteText("/etc/localtime.new", file + std::string("\0\0ABC\0", 6));
    std::filesystem::rename("/etc/localtime.new", "/etc/localtime");
}

// A zone that is set while the process runs counts from the next second on, before anything else.
TEST_F(Surroundings, TheZoneChanges) {
    if (mount("none", "/etc", "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "no private namespace";
    const std::string before = std::getenv("TZ");
    unsetenv("TZ");
    SetZone(0);
    Load({"1,'A',5,20,'true',0,0"});
    runtime.SetLastHour(1);
    Tick();
    const struct {
        int zone, seconds;
        const char* stored;
        int records;  // the zone's minute 0 of another hour
    } kCases[] = {{2, 1, "2024-03-05 03:45:01", 0}, {-1, 2, "2024-03-05 00:45:02", 0}};
    std::uint8_t state = 1;
    for (const auto& c : kCases) {
        SetZone(c.zone);
        FakeClock::Set(FakeClock::kStart + c.seconds);
        live.SetSignal(20, state);
        state = 1 - state;
        Tick();
        EXPECT_EQ(std::vector<std::string>{c.stored},
                  QueryRows(AppFile(kEventFile), "SELECT timestamp FROM tagSOE ORDER BY id DESC LIMIT 1"));
    }
    // In the first minute of an hour, to another hour: that one's records are due.
    FakeClock::Set(FakeClock::kStart + 15 * 60);
    Tick();
    const int records = Records();
    SetZone(5);
    FakeClock::Set(FakeClock::kStart + 15 * 60 + 58);
    Tick();
    EXPECT_EQ(records + 2, Records());
    // Looking at it costs no memory.
    const std::uint64_t allocated = Allocations();
    for (int i = 1; i <= 5; ++i) {
        FakeClock::Set(FakeClock::kStart + 15 * 60 + 60 + i);
        runtime.SchedulerTick();
    }
    EXPECT_EQ(allocated, Allocations());
    umount("/etc");
    setenv("TZ", before.c_str(), 1);
    tzset();
}

// Passes without anything new allocate nothing; the snapshots, when they fall due, do.
TEST_F(Surroundings, QuietPassesAllocateNothing) {
    runtime.m_portCount = 8;
    runtime.m_sendflag = 1;
    LimitQueue(16384);
    PointRows rows;
    for (int i = 0; i < 612; ++i) {
        const std::string number = std::to_string(i);
        rows.yx.push_back("1,'s',3," + number + ",'true'," + number + "," + std::to_string(i % 2));
        rows.yc.push_back("1,'v'," + number + ",0,100,1,0,0,0");
    }
    MakePoints(rows);
    Printed([&] { EXPECT_EQ(0, runtime.InitPointSettingYX() + runtime.InitPointSettingYC()); });
    std::uint8_t passes = 0;
    const auto allocatedIn = [&](int count) {
        const std::uint64_t before = Allocations();
        for (int i = 0; i < count; ++i) RunPass(runtime, passes);
        return Allocations() - before;
    };
    Printed([&] {
        EXPECT_LT(0U, allocatedIn(20));
        EXPECT_EQ(0U, allocatedIn(500));
        EXPECT_LT(0U, allocatedIn(100));
    });
}

}  // namespace
