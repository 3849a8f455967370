// A day of the real program in which one call fails, or all from there on: every call of a kind that the day
// makes, of the allocations one in 97 unless ZOR_FAULTS is "all".
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/msg.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPoints = 12;
constexpr int kFirstPoint = 291;        // among them those that count switching and record measurements
constexpr int kLastSeedEvent = 100003;  // so high that old events have to go
constexpr int kSeedRecords = 3;
constexpr std::uint32_t kSomePasses = 12;  // the pauses between charging records count as passes
constexpr std::int64_t kMidnight = CStationProcess::kStart + 51300;

struct Kind {
    const char* name;
    EFault fault;
    int error;
    std::uint32_t stride = 1;
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

class CFaults : public testing::TestWithParam<std::tuple<Kind, bool>>, CCleanBothEnds {
  protected:
    CFaults() {
        RunSql(AppFile(kConfigFile),
               "PRAGMA kdf_iter=2; CREATE TABLE tagSystem (name, value);"
               "INSERT INTO tagSystem VALUES ('chargport_number', '2')",
               kConfigKey);
        std::vector<std::string> yx = YxRows(kPoints - 1, kFirstPoint);
        yx.push_back("1,'reported',3," + std::to_string(kFirstPoint + kPoints - 1) + ",'true',77,0");
        MakePoints({yx, {"1,'a',72,0,50,0.1,0,0,0", "2,'b',101,0,50,1,0,0,0"}});
        MakeSeed();
        WriteText(m_planFile, std::string(sizeof(FaultPlan), '\0'));
        const int file = open(m_planFile.c_str(), O_RDWR | O_CLOEXEC);
        plan = static_cast<FaultPlan*>(
            mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
        close(file);
        setenv(kFaultPlan, m_planFile.c_str(), 1);
    }
    ~CFaults() override {
        unsetenv(kFaultPlan);
        munmap(plan, sizeof(FaultPlan));
        fs::remove_all(m_seed);
    }

    // Files of a station that has been at work and ended in the middle of writing a record.
    void MakeSeed() {
        CStationProcess process;
        process.SetTime(kMidnight - 3605);
        process.RunPasses(1);
        RunSql(m_events, "UPDATE tagSOE SET id=" + std::to_string(kLastSeedEvent));
        RunSql(
            m_history,
            "INSERT INTO tagYC (portNo, sendcount, mvalue, timestamp) VALUES (1,1,7,'2024-03-04 00:00:00'),"
            "(2,1,7,'2024-03-04 00:00:00'),(1,0,7,'2024-03-04 01:00:00')");
        EXPECT_TRUE(process.RunIntoKill(20, 60));
        EXPECT_TRUE(fs::exists(m_history + "-journal"));
        fs::copy(kAppDirectory, m_seed);
    }

    // The day, on the seed's files, with a strike at the `nth` call. False when that came in the start, which
    // the process may end as at a database that cannot be opened, or go on without its points.
    bool RunDay(CStationProcess& process, std::uint32_t nth) {
        fs::remove_all(kAppDirectory);
        fs::copy(m_seed, kAppDirectory);
        msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
        SetAll(0);
        process.SetTime(kMidnight - 2);
        SendFrame(SettingsFrame({1000, 5, 5, 5, 5, 10, 60}));
        struct Step {
            std::uint32_t passes;
            int events;  // stored in them, at least
            int records;
            std::function<void()> act;
        };
        const Step day[] = {
            {1, 0, 0, [] {}},
            {8, kPoints, 0, [this] { SetAll(1); }},
            {20, 0, 2, [] { SendFrame(Hex("08 00 85 2c 01 05 03 24 20 18")); }},           // the whole day
            {6, 0, 0, [] { SendFrame(Hex("08 00 85 2c 02 05 03 24 20 17")); }},            // its last hour
            {30, 0, 0, [] { SendFrame(Hex("0b 00 85 2f 01 00 00 00 06 03 24 20 00")); }},  // acknowledged
            {40, 0, 0, [&] { process.SetTime(kMidnight + 2400); }},
            {10, kPoints, 0, [this] { SetAll(0); }},
        };
        const auto& [kind, always] = GetParam();
        *plan = {kind.fault, nth, always ? 1U : 0U, kind.error, 0, 0};
        int status = 0;
        bool alive = true;
        bool started = true;
        bool struckAtStart = false;
        storedEvents = 1;
        storedRecords = kSeedRecords;
        for (const Step& step : day) {
            step.act();
            alive = alive && process.RunOrEnd(step.passes, status);
            ReadAll();
            if (&step == day) {
                started = alive;
                struckAtStart = plan->hits > 0;
            }
            if (plan->hits > 0) continue;
            storedEvents += step.events;
            storedRecords += step.records;
        }
        EXPECT_EQ(started, alive) << "the loop ended";
        EXPECT_EQ(0, status) << process.Errors();
        plan->nth = 0;
        return !struckAtStart;
    }

    // What was committed before the strike is there, no file is damaged.
    void CheckFiles() const {
        for (const std::string& file : {m_events, m_history})
            EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), testing::ElementsAre("ok"));
        EXPECT_LE(storedEvents, QueryNumber(m_events, "SELECT count(*) FROM tagSOE"));
        EXPECT_EQ(kLastSeedEvent, QueryNumber(m_events, "SELECT max(id)-count(*)+1 FROM tagSOE"));
        EXPECT_LE(storedRecords, QueryNumber(m_history, "SELECT count(*) FROM tagYC"));
        EXPECT_EQ(kSeedRecords, QueryNumber(m_history, "SELECT count(*) FROM tagYC WHERE mvalue=7"));
        EXPECT_EQ(kPoints, QueryNumber(AppFile(kPointSettingFile), "SELECT count(*) FROM tagPS_YX_DC"));
    }
    // Events are stored and reports sent.
    void CheckWork(CStationProcess& process) {
        SetAll(0);
        SendFrame(SettingsFrame());
        process.RunPasses(kSomePasses);
        ReadAll();
        const int before = QueryNumber(m_events, "SELECT count(*) FROM tagSOE");
        SetAll(1);
        process.RunPasses(kSomePasses);
        EXPECT_EQ(before + kPoints, QueryNumber(m_events, "SELECT count(*) FROM tagSOE"));
        EXPECT_FALSE(ReadAll().empty());
    }
    void SetAll(std::uint8_t state) {
        for (int point = kFirstPoint; point < kFirstPoint + kPoints; ++point) live.SetSignal(point, state);
        live.SetGunState(1, state);
    }

    FaultPlan* plan = nullptr;
    CLiveValues live;
    int storedEvents = 0;  // by the time of the strike
    int storedRecords = 0;

  private:
    const std::string m_events = AppFile(kEventFile);
    const std::string m_history = AppFile(kHistoryFile);
    const std::string m_planFile = std::string(kScratchDirectory) + "fault-plan";
    const std::string m_seed = std::string(kScratchDirectory) + "seed";
};
using Faults = CFaults;

TEST_P(Faults, CostNothingThatIsStored) {
    const Kind& kind = std::get<0>(GetParam());
#ifdef ZOR_ADDRESS_SANITIZER
    if (kind.fault == EFault::Malloc) GTEST_SKIP() << "the sanitizer has an allocator of its own";
#endif
    const char* wanted = std::getenv("ZOR_FAULTS");
    const bool all = wanted != nullptr && std::strcmp(wanted, "all") == 0;
    std::uint32_t nth = 1;
    for (;; nth += all ? 1 : kind.stride) {
        SCOPED_TRACE("call " + std::to_string(nth));
        auto process = std::make_unique<CStationProcess>();
        const bool goesOn = RunDay(*process, nth);
        if (plan->hits == 0) break;
        CheckFiles();
        if (!goesOn) process = std::make_unique<CStationProcess>();
        CheckWork(*process);
    }
    std::printf("%u calls of %s\n", plan->calls, kind.name);
    EXPECT_LT(8U, nth);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, Faults,
    testing::Combine(testing::Values(Kind{"Open", EFault::Open, EIO}, Kind{"Write", EFault::Write, ENOSPC},
                                     Kind{"Sync", EFault::Sync, EIO}, Kind{"Unlink", EFault::Unlink, EIO},
                                     Kind{"Msgsnd", EFault::Msgsnd, EAGAIN},
                                     Kind{"Msgrcv", EFault::Msgrcv, EINTR},
                                     Kind{"Malloc", EFault::Malloc, ENOMEM, 97}),
                     testing::Bool()),
    [](const auto& test) {
        return (std::get<1>(test.param) ? "Every" : "One") + std::string(std::get<0>(test.param).name);
    });

}  // namespace
