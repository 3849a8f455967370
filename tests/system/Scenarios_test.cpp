// The shipped scenarios, played against the real program on the tests' clock.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "System/AppFiles.h"
#include "tests/support/Bytes.h"
#include "tests/support/Databases.h"
#include "tests/support/Sandbox.h"
#include "tests/support/StationProcess.h"
#include "tools/zorctl/Player.h"
#include "tools/zorctl/StationFiles.h"
#include "tools/zorctl/StationRows.h"

namespace {

struct Outcome {
    int failures;
    Captured shown;
    double seconds;  // on the clock of the process
};

// Plays the scenario in `text` against a fresh station of two ports whose clock starts at `start`. Between
// two looks of the player the process runs one pass of its loop.
Outcome PlayOn(const std::string& file, const std::string& text, std::int64_t start) {
    std::vector<std::string> faults;
    const Scenario scenario = ParseScenario(file, text, faults);
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
    CEventReader events(AppFile(kEventFile));
    CPlayLog log(EPlayOutput::All);
    CPlayer player(scenario, {live, channel, stop, events, log});
    const std::int64_t began = process.Micros();
    const auto moment = [&] {
        const std::int64_t now = process.Micros();
        return PlayMoment{PlayTime{now - began}, {now / 1000000, now % 1000000 * 1000}};
    };
    Outcome outcome{};
    outcome.shown = Capture([&] {
        while (player.Advance(moment()) && process.Pid() > 0) process.RunPasses(1);
    });
    outcome.failures = player.Failures();
    outcome.seconds = static_cast<double>(process.Micros() - began) / 1e6;
    CleanStation();
    return outcome;
}

std::string ShippedText(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(ZOR_SCENARIOS + name).rdbuf();
    return text.str();
}

constexpr std::int64_t kShortlyBeforeMidnight = CStationProcess::kStart + 51290;  // 23:59:50

TEST(Scenarios, ShippedOnesAreMet) {
    const struct {
        const char* name;
        std::int64_t start;
        double least;  // seconds that the play has to take
        double most;
    } kCases[] = {
        {"plug.zor", CStationProcess::kStart, 5, 7},      {"session.zor", CStationProcess::kStart, 18, 21},
        {"fault.zor", CStationProcess::kStart, 28, 31},   {"emergency.zor", CStationProcess::kStart, 29, 32},
        {"midnight.zor", kShortlyBeforeMidnight, 30, 40},
    };
    for (const auto& item : kCases) {
        const Outcome outcome = PlayOn(item.name, ShippedText(item.name), item.start);
        EXPECT_EQ(0, outcome.failures) << item.name << '\n' << outcome.shown.err << outcome.shown.out;
        EXPECT_EQ("", outcome.shown.err);
        EXPECT_GT(outcome.seconds, item.least) << item.name;
        EXPECT_LT(outcome.seconds, item.most) << item.name;
    }
}

TEST(Scenarios, WrongExpectationsAreNamed) {
    const Outcome outcome = PlayOn("wrong.zor",
                                   "settings on\n"
                                   "2s port 2 plug\n"
                                   "expect A1_14 port 2 state 5 within 1s\n"
                                   "expect no soe \"Gun connected\" within 1s\n"
                                   "expect soe \"Gun locked\" within 1s\n"
                                   "expect A1_5 within 1s\n",
                                   CStationProcess::kStart);
    EXPECT_EQ(4, outcome.failures);
    EXPECT_EQ(
        "zorctl: wrong.zor:4: expect no soe \"Gun connected\" within 1s: failed; came: "
        "\"[Normal]Gun connected 0 -> 1\" point 262 value 1 table 0\n"
        "zorctl: wrong.zor:3: expect A1_14 port 2 state 5 within 1s: failed; came: A1_14 port 2 state 3\n"
        "zorctl: wrong.zor:5: expect soe \"Gun locked\" within 1s: failed; came: "
        "\"[Normal]Gun connected 0 -> 1\" point 262 value 1 table 0\n"
        "zorctl: wrong.zor:6: expect A1_5 within 1s: failed; came: only A1_11, A1_15, A1_14\n",
        outcome.shown.err);
}

}  // namespace
