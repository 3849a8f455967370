// A station at work for days, tick by tick: guns and faults move, ports charge, old events make room;
// zor_main reads, stays away for a while and comes back. ZOR_SOAK_DAYS says how many days, one without it.

#include <deque>
#include <filesystem>
#include <map>

#include "System/DateTime.h"
#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/PortState.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kStart =
    CStationProcess::kStart + 14 * kHour;  // 23:45, so that the first hour has it all
constexpr int kBetweenGuns = 30;
constexpr int kBetweenWalks = 600;  // which then have events of all ports: each rewrites the whole file
constexpr int kOldEvents = 1500;    // for each day, whose new ones, fewer than that, take their place

// What must stay level: KiB of memory of its own in RAM, open files, messages in the queue, which holds
// seven.
using Levels = std::array<long, 3>;
constexpr Levels kGrowth = {128, 0, 7};

struct Soak : testing::Test, CleanBothEnds {
    Soak() {
        MakeConfig(kPorts);
        MakePoints({{"1,'all',3,20,'true',21,0",
                     "1,'port',3," + std::to_string(kSignalGunConnected) + ",'true',100,0"},
                    {"1,'value',101,0,100,0.1,0,0,0"}});
        process.SetTime(kStart);
        process.RunPasses(1);
        RunSql(AppFile(kEventFile),
               "UPDATE tagSOE SET id=100000; WITH RECURSIVE old(id) AS (VALUES(1) UNION ALL SELECT id+1 FROM "
               "old LIMIT " +
                   std::to_string(days * kOldEvents) + ") INSERT INTO tagSOE SELECT id,'',0,0,0,'' FROM old");
        LimitQueue(16384);
        SendFrame(SettingsFrame());
    }

    void RunSecond(long second, bool mainReads) {
        if (second % kBetweenGuns == 0) MoveGun(static_cast<int>(second / kBetweenGuns));
        if (second % kBetweenWalks == 0) MoveSignals(walks++ % 2 == 0);
        if (second % (4 * kHour) == 0)  // zor_main asks for a day
            commands.push_back(
                Hex("08 00 85 2c 03 " +
                    CDateTime(static_cast<std::time_t>(process.Time() - kDay)).Format("%d %m %y 20 18")));
        for (int half = 0; half < 2; ++half) {
            process.RunPasses(5);
            if (mainReads) PlayMain();
        }
    }
    void MoveGun(int move) {
        const int port = move % kPorts + 1;
        const auto gun = static_cast<std::uint8_t>(move / kPorts % 4);
        live.SetGunState(port, gun);
        live.SetSignal(PortBase(port) + kSignalCharging, gun == kGunCharging);
        live.SetYc(101, static_cast<std::uint32_t>(move));
    }
    // The points of copy n lie 128 * (1 + ... + n) above those of the first port.
    void MoveSignals(bool on) {
        live.SetSignal(20, on);
        for (int copy = 0; copy < kPorts; ++copy)
            live.SetSignal(kSignalGunConnected + 64 * copy * (copy + 1), on);
    }
    // It reads everything, and acknowledges the records of midnight.
    void PlayMain() {
        for (const std::string& message : ReadNamed()) {
            const std::string kind = message.substr(0, message.find(' '));
            constexpr std::size_t kPort = 30;  // the time follows, its hour in the third byte, and the status
            ++messages[kind];
            if (kind != "A1_16" || message.size() < kPort) continue;
            ++records[message.substr(kPort, 26)];
            if (message.substr(kPort + 9, 2) == "00")
                commands.push_back(Hex("0b 00 85 2f " + message.substr(kPort, 24)));
        }
        if (!commands.empty() && SendFrame(commands.front())) commands.pop_front();
    }
    Levels Measure() const {
        const std::filesystem::directory_iterator files("/proc/" + std::to_string(process.Pid()) + "/fd");
        return {process.PrivateKb(), std::distance(begin(files), {}), static_cast<long>(Waiting())};
    }

    const char* wanted = std::getenv("ZOR_SOAK_DAYS");
    const std::int64_t days = wanted != nullptr ? std::max(1, std::atoi(wanted)) : 1;
    CLiveValues live;
    CStationProcess process;
    int walks = 0;
    std::map<std::string, int> messages;  // by kind
    std::map<std::string, int> records;   // by port, time and status
    std::deque<Bytes> commands;
};

TEST_F(Soak, Days) {
    const std::int64_t back = kStart + (days + 1) / 2 * kDay + kHour / 2;  // just after a midnight
    const std::int64_t away = back - std::min(kDay, days * kDay / 4);
    const std::string history = AppFile(kHistoryFile);
    Levels base{};
    Levels most{};
    int pendingAtReturn = -1;
    const auto pending = [&] {
        return QueryNumber(history, "SELECT count(*) FROM tagYC WHERE sendcount != 0");
    };
    long second = 0;
    while (process.Time() < kStart + days * kDay + kHour && !HasFatalFailure()) {
        const std::int64_t now = process.Time();
        if (now >= back && pendingAtReturn < 0) {
            pendingAtReturn = pending();
            messages.clear();
        }
        RunSecond(second, now < away || now >= back);
        if (++second % kHour != 0) continue;
        CStationProcess::TakeOutput();
        const Levels levels = Measure();
        if (second == kHour) base = levels;
        for (std::size_t i = 0; i < most.size(); ++i) most[i] = std::max(most[i], levels[i]);
    }
    const int events = walks * (kPorts + 1);
    std::printf("%ld ticks, %d events\n", 10 * second, events);
    for (std::size_t i = 0; i < most.size(); ++i) {
        std::printf("level %zu: %ld after an hour, then up to %ld\n", i, base[i], most[i]);
        EXPECT_GE(base[i] + kGrowth[i], most[i]);
    }
    for (const char* kind : {"A1_11", "A1_13", "A1_14", "A1_15", "A1_16", "A1_5", "A1_6"})
        EXPECT_LT(0, messages[kind]) << kind;
    EXPECT_EQ(kPorts, pendingAtReturn);
    EXPECT_EQ(0, pending());
    for (std::int64_t hour = kStart + kHour / 4; hour < away; hour += kHour)
        for (int port = 1; port <= kPorts; ++port)
            EXPECT_EQ(1,
                      records["0" + std::to_string(port) + " " +
                              CDateTime(static_cast<std::time_t>(hour)).Format("00 00 %H %d %m %y 20 00")]);
    EXPECT_EQ(kPorts * (days * 24 + 1), QueryNumber(history, "SELECT count(*) FROM tagYC"));
    EXPECT_EQ(kPorts * (days * 24 + 1),
              QueryNumber(history, "SELECT count(DISTINCT portNo || substr(timestamp,1,13)) FROM tagYC"));
    // The newest two are still to make room for themselves. Writing the file anew raises the version.
    EXPECT_EQ(events - 1, QueryNumber(AppFile(kEventFile), "SELECT min(id) FROM tagSOE"));
    EXPECT_EQ(days * kOldEvents + 3, QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagSOE"));
    EXPECT_LE(walks, QueryNumber(AppFile(kEventFile), "PRAGMA schema_version"));
}

}  // namespace
