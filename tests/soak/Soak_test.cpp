// A station at work for days, tick by tick: guns and faults move, ports charge, old events make room;
// zor_main reads, stays away for a while and comes back. ZOR_SOAK_DAYS says how many days, one without it.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <malloc.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <set>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "app/MainLoop.h"
#include "app/StartUp.h"
#include "ipc/Messages.h"
#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/PortState.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr int kStationWide = 52;
constexpr int kPerPort = 71;
constexpr std::time_t kHour = 3600;
constexpr std::time_t kDay = 24 * kHour;
constexpr std::time_t kStart = FakeClock::kStart + 14 * kHour;  // 23:45, so that the first hour has it all
constexpr int kBetweenGuns = 30;
constexpr int kBetweenWalks = 600;  // which then have events of all ports: each rewrites the whole file
constexpr int kOldEvents = 1500;    // for each day, whose new ones, fewer than that, take their place

// What must stay level: KiB of heap in use and of memory of its own in RAM, open files, messages that wait
// for the drain and in the queue, which holds seven.
using Levels = std::array<long, 5>;
constexpr Levels kGrowth = {8, 128, 0, 16, 7};

class CSoak : public CEmptyStationTest {
  protected:
    CSoak() {
        FakeClock::Set(kStart);
        MakeConfig(kPorts);
        PointRows rows;
        for (int i = 0; i < kStationWide + kPerPort; ++i) {
            const int point = i < kStationWide ? i : kSignalPortFault + i - kStationWide;
            const std::string number = std::to_string(point);
            rows.yx.push_back("1,'signal',3," + number + ",'true',1" + number + ",0");
            if (point > kSignalPortFault) rows.yc.push_back("1,'value'," + number + ",1,0,0.1,0,0,0");
        }
        MakePoints(rows);
        runtime.SetShmAccessor(&live);
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        StartUp(runtime);
        RunSql(AppFile(kEventFile),
               "UPDATE tagSOE SET id=100000; WITH RECURSIVE old(id) AS (VALUES(1) UNION ALL SELECT id+1 FROM "
               "old LIMIT " +
                   std::to_string(days * kOldEvents) + ") INSERT INTO tagSOE SELECT id,'',0,0,0,'' FROM old");
        LimitQueue(16384);
        SendFrame(SettingsFrame());
    }
    ~CSoak() override { Speak(); }
    void Speak() {
        std::fflush(stdout);
        dup2(m_stdout, STDOUT_FILENO);
    }

    void RunSecond(std::time_t now, bool mainReads) {
        FakeClock::Set(now);  // forgets the sleeps
        if (now % kBetweenGuns == 0) MoveGun(static_cast<int>(now / kBetweenGuns));
        if (now % kBetweenWalks == 0) MoveSignals(walks++);
        for (int pass = 1; pass <= 10; ++pass) {
            RunPass(runtime, m_receiveCounter);
            usleep(runtime.TickPeriodMs() * 1000);
            if (pass % 5 == 0 && mainReads) PlayMain(now);
        }
    }
    void MoveGun(int move) {
        const int port = move % kPorts + 1;
        const auto gun = static_cast<std::uint8_t>(move / kPorts % 4);
        live.SetGunState(port, gun);
        live.SetSignal(PortBase(port) + kSignalCharging, gun == kGunCharging);
        live.SetYc(kSignalPortFault + move % kPerPort, static_cast<std::uint32_t>(move));
    }
    // The points of copy n lie 128 * (1 + ... + n) above those of the first port.
    void MoveSignals(int walk) {
        live.SetSignal(walk % kStationWide, walk / kStationWide % 2 == 0);
        for (int copy = 0; copy < kPorts; ++copy)
            live.SetSignal(kSignalPortFault + 64 * copy * (copy + 1) + walk % kPerPort,
                           walk / kPerPort % 2 == 0);
    }

    // zor_main reads everything, acknowledges the records of midnight and asks for a day now and then.
    void PlayMain(std::time_t now) {
        for (const auto& [sender, frame] : ReadAll()) {
            constexpr std::size_t kPort = 14;  // the time follows, its hour in the third byte
            const auto code = static_cast<std::uint16_t>(frame[2] << 8 | frame[3]);
            kinds.insert(FindMessage(code)->name);
            ++messages;
            if (code != kCodeA1_16 || frame.size() == 6 || frame[kPort + 3] != 0) continue;
            Bytes answer = Hex("0b 00 85 2f");
            answer.insert(answer.end(), &frame[kPort], &frame[kPort] + 8);
            m_commands.push_back(answer);
        }
        if (now % (4 * kHour) == 0)
            m_commands.push_back(Hex("08 00 85 2c 03 " + CDateTime(now - kDay).Format("%d %m %y 20 18")));
        if (!m_commands.empty() && SendFrame(m_commands.front())) m_commands.pop_front();
    }

    Levels Measure() {
        const auto heap = mallinfo2();
        auto own = static_cast<long>(heap.arena / 1024);
        std::ifstream status("/proc/self/status");  // where company would count too
        for (std::string line; sizeof ZOR_TEST_COMPANY == 1 && std::getline(status, line);)
            std::sscanf(line.c_str(), "RssAnon: %ld", &own);
        const std::filesystem::directory_iterator files("/proc/self/fd");
        std::vector<std::pair<std::uint32_t, void*>> toDrain(1);
        while (runtime.m_outboundQueue->Pop(toDrain.back().first, toDrain.back().second) == 1)
            toDrain.emplace_back();
        toDrain.pop_back();
        for (const auto& [code, buffer] : toDrain) runtime.m_outboundQueue->Push(code, buffer);
        return {static_cast<long>((heap.uordblks + heap.hblkhd) / 1024), own, std::distance(begin(files), {}),
                static_cast<long>(toDrain.size()), static_cast<long>(Waiting())};
    }

    const char* wanted = std::getenv("ZOR_SOAK_DAYS");
    const std::time_t days = wanted != nullptr ? std::max(1, std::atoi(wanted)) : 1;
    CLiveValues live;
    CTestRuntime runtime;
    int walks = 0;
    std::set<std::string> kinds;  // of messages
    long messages = 0;            // since zor_main's return

  private:
    int m_stdout = dup(STDOUT_FILENO);
    std::uint8_t m_receiveCounter = 0;
    std::deque<Bytes> m_commands;
};
using Soak = CSoak;

TEST_F(Soak, Days) {
    // malloc counts as in use the small blocks that it keeps for the next to ask, which come to 80 KiB in
    // time.
    const char* tunables = std::getenv("GLIBC_TUNABLES");
    ASSERT_STREQ("glibc.malloc.tcache_count=0", tunables != nullptr ? tunables : "") << "set it";
    const std::time_t back = kStart + (days + 1) / 2 * kDay + kHour / 2;  // just after a midnight
    const std::time_t away = back - std::min(kDay, days * kDay / 4);
    const std::string history = AppFile(kHistoryFile);
    constexpr char kPending[] = "SELECT count(*) FROM tagYC WHERE sendcount != 0";
    Levels base{};
    Levels most{};
    long seconds = 0;
    int pendingAtReturn = 0;
    for (std::time_t now = kStart; now < kStart + days * kDay + kHour; now = std::time(nullptr)) {
        if (now == back) {
            pendingAtReturn = QueryNumber(history, kPending);
            messages = 0;
        }
        RunSecond(now, now < away || now >= back);
        if (++seconds % kHour != 0) continue;
        const Levels levels = Measure();
        if (seconds == kHour) base = levels;
        for (std::size_t i = 0; i < most.size(); ++i) most[i] = std::max(most[i], levels[i]);
    }
    Speak();
    const int events = walks * (kPorts + 1);
    std::printf("%ld ticks, %d events\n", 10 * seconds, events);
    for (std::size_t i = 0; i < most.size(); ++i) {
        std::printf("level %zu: %ld after an hour, then up to %ld\n", i, base[i], most[i]);
        EXPECT_GE(base[i] + kGrowth[i], most[i]);
    }
    EXPECT_THAT(kinds, testing::ElementsAre("A1_11", "A1_13", "A1_14", "A1_15", "A1_16", "A1_5", "A1_6"));
    EXPECT_LT(200, messages);
    EXPECT_EQ(kPorts, pendingAtReturn);
    EXPECT_EQ(0, QueryNumber(history, kPending));
    EXPECT_EQ(kPorts * (days * 24 + 1), QueryNumber(history, "SELECT count(*) FROM tagYC"));
    EXPECT_EQ(kPorts * (days * 24 + 1),
              QueryNumber(history, "SELECT count(DISTINCT portNo || substr(timestamp,1,13)) FROM tagYC"));
    // The newest two are still to make room for themselves. Writing the file anew raises the version.
    EXPECT_EQ(events - 1, QueryNumber(AppFile(kEventFile), "SELECT min(id) FROM tagSOE"));
    EXPECT_EQ(days * kOldEvents + 3, QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagSOE"));
    EXPECT_LE(walks, QueryNumber(AppFile(kEventFile), "PRAGMA schema_version"));
}

}  // namespace
