// The real program, two hours long, while everything around it fails at once.
#include <gmock/gmock.h>
#include <sys/msg.h>

#include <memory>
#include <random>

#include "System/AppFiles.h"
#include "ipc/Frame.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::HasSubstr;

constexpr std::int64_t kDuration = 2 * 3600;
constexpr std::int64_t kLongestPass = 1300000;  // a tick, and what it may be late, microseconds

// What locks a file for a while, and then does not for a while.
class CLocker {
  public:
    explicit CLocker(const char* file) : m_file(AppFile(file)) {}

    void Pass(std::mt19937& random) {
        if (--m_passes > 0) return;
        // Readers and writers; mostly for seconds, sometimes for minutes.
        static constexpr const char* kKinds[] = {CForeignLock::kWriter, "BEGIN IMMEDIATE",
                                                 "BEGIN; SELECT * FROM sqlite_master"};
        m_passes = static_cast<int>(random() % (random() % 20 == 0 ? 1200 : 100)) + 1;
        m_lock = m_lock ? nullptr : std::make_unique<CForeignLock>(m_file, kKinds[random() % 3]);
    }
    void Leave() { m_lock.reset(); }

  private:
    std::string m_file;
    int m_passes = 100;
    std::unique_ptr<CForeignLock> m_lock;
};

// Something of zor_main's type that is no command of it: random, or longer than any.
void SendNonsense(std::mt19937& random) {
    struct {
        long type = kTypeFromMain;
        std::uint8_t text[4000];
    } message;
    for (std::uint8_t& byte : message.text) byte = static_cast<std::uint8_t>(random());
    msgsnd(msgget(kQueueKey, 0), &message, random() % sizeof message.text, IPC_NOWAIT);
}

class CSiege : public testing::Test, CCleanBothEnds {};
using Siege = CSiege;

TEST_F(Siege, TwoHours) {
    constexpr int kPoints[] = {99, 137, 169, 265, 297};
    std::vector<std::string> rows;
    for (const int point : kPoints)
        rows.push_back("1,'" + std::to_string(point) + "',3," + std::to_string(point) + ",'true',0,0");
    MakeConfig(1);
    MakePoints({rows, {}});
    CLiveValues live;
    CStationProcess process;
    process.HangLog();
    process.RunPasses(1);
    RunSql(AppFile(kHistoryFile), "INSERT INTO tagYC(portNo, sendcount) VALUES(0, 1)");
    SendFrame(SettingsFrame());

    std::mt19937 random(1);  // NOLINT(*-msc51-cpp): every run is the same
    CLocker events(kEventFile);
    CLocker history(kHistoryFile);
    std::vector<std::string> expected = {"SOE database init!"};
    std::map<int, std::uint8_t> states;
    for (int pass = 0; process.Time() < CStationProcess::kStart + kDuration; ++pass) {
        events.Pass(random);
        history.Pass(random);
        if (pass % 600 == 0) msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
        if (pass % 5 == 0) SendNonsense(random);
        if (pass % 50 == 0) SendFrame(SettingsFrame());
        if (pass % 100 == 0) ReadAll();
        for (const int point : kPoints) {
            if (random() % 40 != 0) continue;
            std::uint8_t& state = states[point];
            state = 1 - state;
            live.SetSignal(point, state);
            expected.push_back("[Normal]" + std::to_string(point) + (state == 1 ? " 0 -> 1" : " 1 -> 0"));
        }
        const std::int64_t before = process.Micros();
        process.RunPasses(1);
        ASSERT_GE(kLongestPass, process.Micros() - before) << pass;
    }
    events.Leave();
    history.Leave();
    process.RunPasses(200);
    EXPECT_EQ(expected, QueryRows(AppFile(kEventFile), "SELECT event FROM tagSOE ORDER BY id"));
    EXPECT_EQ(std::count(expected.begin(), expected.end(), "[Normal]297 0 -> 1"),
              QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagErrMsg"));

    // Everything is at work: the log, commands, events, messages, records.
    EXPECT_THAT(process.ReadHungLog(), HasSubstr("the last record id is 1\n"));
    ReadAll();
    RunSql(AppFile(kHistoryFile), "UPDATE tagYC SET sendcount = 1 WHERE id = 1");
    SendFrame(SettingsFrame());
    live.SetSignal(99, 1 - states[99]);
    process.RunPasses(30);
    EXPECT_THAT(process.ReadHungLog(), testing::AllOf(HasSubstr(" lines left out: nobody read them\n"),
                                                      HasSubstr("m_sendflag:1\n")));
    EXPECT_EQ(static_cast<int>(expected.size()) + 1,
              QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagSOE"));
    EXPECT_EQ(2, QueryNumber(AppFile(kHistoryFile), "SELECT sendcount FROM tagYC WHERE id = 1"));
    std::string names;
    for (const std::string& message : ReadNamed()) names += message.substr(0, message.find(' ')) + ' ';
    EXPECT_THAT(names, testing::AllOf(HasSubstr("A1_13 "), HasSubstr("A1_14 "), HasSubstr("A1_16 ")));
}

}  // namespace
