// The shipped scenarios, played against the real program on the tests' clock.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "System/AppFiles.h"
#include "tests/support/Bytes.h"
#include "tests/support/Databases.h"
#include "tests/support/Sandbox.h"
#include "tests/support/StationProcess.h"
#include "tools/zorctl/scenario/Player.h"
#include "tools/zorctl/settings/StationFiles.h"
#include "tools/zorctl/settings/StationRows.h"

namespace {

// Plays the shipped scenario `name` against a fresh station of two ports whose clock starts at `start`.
// Between two looks of the player the process runs one pass of its loop. Returns how many seconds it took on
// the clock of the process.
double Play(const std::string& name, std::int64_t start) {
    std::ostringstream text;
    text << std::ifstream(ZOR_SCENARIOS + name).rdbuf();
    std::vector<std::string> faults;
    const Scenario scenario = ParseScenario(name, text.str(), faults);
    EXPECT_TRUE(faults.empty()) << faults[0];
    CleanStation();
    EXPECT_EQ("", WriteConfiguration(AppFile(kConfigFile), 2) +
                      WritePointSettings(AppFile(kPointSettingFile), StationYxRows(), StationYcRows(2)));
    CStationProcess process;
    process.SetTime(start);
    process.RunPasses(1);

    CStopSignals stop;
    CMainChannel channel;
    EXPECT_TRUE(channel.Open(DeadlineIn(0), stop));
    CBenchShm live;
    CEventReader events(kAppDirectory);
    CPlayLog log(EPlayOutput::All);
    CPlayer player(scenario, {live, channel, stop, events, log});
    const std::int64_t began = process.Micros();
    const auto moment = [&] {
        const std::int64_t now = process.Micros();
        return PlayMoment{PlayTime{now - began},
                          {static_cast<std::time_t>(now / 1000000), static_cast<long>(now % 1000000 * 1000)}};
    };
    const Captured shown = Capture([&] {
        while (player.Advance(moment()) && process.Pid() > 0) process.RunPasses(1);
    });
    EXPECT_EQ(0, player.Failures()) << name << '\n' << shown.err << shown.out;
    EXPECT_EQ("", shown.err);
    CleanStation();
    return static_cast<double>(process.Micros() - began) / 1e6;
}

constexpr std::int64_t kShortlyBeforeMidnight = CStationProcess::kStart + 51290;  // 23:59:50

TEST(Scenarios, ShippedOnesAreMet) {
    const struct {
        const char* name;
        std::int64_t start;
        double least;  // seconds that the play has to take
        double most;
    } kCases[] = {
        {"plug.zor", CStationProcess::kStart, 5, 10},     {"session.zor", CStationProcess::kStart, 18, 24},
        {"fault.zor", CStationProcess::kStart, 28, 35},   {"emergency.zor", CStationProcess::kStart, 29, 36},
        {"midnight.zor", kShortlyBeforeMidnight, 30, 44},
    };
    for (const auto& c : kCases) {
        const double seconds = Play(c.name, c.start);
        EXPECT_GT(seconds, c.least) << c.name;
        EXPECT_LT(seconds, c.most) << c.name;
    }
}

}  // namespace
