// The real program, two hours long, while everything around it fails at once.
#include <fcntl.h>
#include <sys/msg.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <random>

#include "ipc/Frame.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::HasSubstr;

constexpr std::int64_t kDuration = 2 * 3600;
constexpr std::int64_t kLongestPass = 1300000;  // a tick, and what it may be late, microseconds

// What locks a file for a while, and then does not for a while.
struct Locker {
    void Pass(std::mt19937& random) {
        if (--passes > 0) return;
        // Readers and writers; mostly for seconds, sometimes for minutes.
        static constexpr const char* kKinds[] = {CForeignLock::kWriter, "BEGIN IMMEDIATE",
                                                 "BEGIN; SELECT * FROM sqlite_master"};
        passes = static_cast<int>(random() % (random() % 20 == 0 ? 1200 : 100)) + 1;
        lock = lock ? nullptr : std::make_unique<CForeignLock>(AppFile(file), kKinds[random() % 3]);
    }

    const char* file;
    int passes = 100;
    std::unique_ptr<CForeignLock> lock = nullptr;
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

struct Siege : testing::Test, CleanBothEnds {};

TEST_F(Siege, TwoHours) {
    constexpr int kPoints[] = {99, 137, 169, 265, 297};
    std::vector<std::string> rows;
    for (const int point : kPoints)
        rows.push_back("1,'" + std::to_string(point) + "',3," + std::to_string(point) + ",'true',0,0");
    MakeConfig(1);
    MakePoints({rows, {}});
    CLiveValues live;
    // Nobody reads what it prints, until somebody does.
    mkfifo(CStationProcess::kOutput, 0600);
    std::filesystem::create_symlink(CStationProcess::kOutput, CStationProcess::kErrors);
    const int log = open(CStationProcess::kOutput, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    const auto readLog = [log] {
        std::string text(65536, '\0');
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(log, text.data(), text.size()))));
        return text;
    };
    CStationProcess process;
    process.RunPasses(1);
    SendFrame(SettingsFrame());

    std::mt19937 random(1);  // NOLINT(*-msc51-cpp): every run is the same
    Locker lockers[] = {{kEventFile}, {kHistoryFile}};
    std::vector<std::string> expected = {"SOE database init!"};
    std::map<int, std::uint8_t> states;
    for (int pass = 0; process.Time() < CStationProcess::kStart + kDuration; ++pass) {
        for (Locker& locker : lockers) locker.Pass(random);
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
        const std::int64_t before = process.Plan().nowMicros;
        process.RunPasses(1);
        ASSERT_GE(kLongestPass, process.Plan().nowMicros - before) << pass;
    }
    for (Locker& locker : lockers) locker.lock.reset();
    process.RunPasses(200);
    EXPECT_EQ(expected, QueryRows(AppFile(kEventFile), "SELECT event FROM tagSOE ORDER BY id"));
    EXPECT_EQ(std::count(expected.begin(), expected.end(), "[Normal]297 0 -> 1"),
              QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagErrMsg"));

    // Everything is at work: the log, commands, messages.
    readLog();
    ReadAll();
    SendFrame(SettingsFrame());
    process.RunPasses(30);
    EXPECT_THAT(readLog(), testing::AllOf(HasSubstr(" lines left out: nobody read them\n"),
                                          HasSubstr("m_sendflag:1\n")));
    EXPECT_THAT(ReadNamed(), testing::Contains(HasSubstr("A1_13 ")));
    close(log);
    std::filesystem::remove(CStationProcess::kOutput);
    std::filesystem::remove(CStationProcess::kErrors);
}

}  // namespace
