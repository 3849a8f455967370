// A day of the real program in which one call fails, or all from there on: every call of a kind that the day
// makes, of the allocations one in 43 unless ZOR_FAULTS is "all".
#include <gmock/gmock.h>
#include <sys/msg.h>

#include <array>
#include <filesystem>

#include "System/AppFiles.h"
#include "app/ConfigDatabase.h"
#include "reports/Messages.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPoints = 12;
constexpr int kFirstPoint = 291;        // among them those that count switching and record measurements
constexpr int kLastSeedEvent = 100003;  // so high that old events have to go
constexpr std::int64_t kMidnight = CStationProcess::kStart + 51300;

struct Kind {
    const char* name;
    EFault fault;
    int error;
    std::uint32_t calls;  // that the day makes, at least
    std::uint32_t stride = 1;
};
constexpr Kind kKinds[] = {
    {"Open", EFault::Open, EIO, 40},
    {"Write", EFault::Write, ENOSPC, 160},
    {"Sync", EFault::Sync, EIO, 41},
    {"Unlink", EFault::Unlink, EIO, 9},
    {"Msgsnd", EFault::Msgsnd, EAGAIN, 34},
    {"Msgrcv", EFault::Msgrcv, EINTR, 30},
#ifndef ZOR_ADDRESS_SANITIZER  // which has an allocator of its own
    {"Malloc", EFault::Malloc, ENOMEM, 9000, 43},
#endif
};
void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

// Events, measurements at a fault, records, acknowledged records, charging records sent: those of the seed,
// and those of the day.
constexpr int kSeedHours = 12;
using Results = std::array<int, 5>;
constexpr std::size_t kSent = 4;
constexpr Results kSeed = {1, 0, kSeedHours + 1, 0, 0};
constexpr Results kAll = {1 + 2 * kPoints, 1, kSeedHours + 3, 1, kSeedHours + 8};

class CFaults : public testing::TestWithParam<Kind>, CCleanBothEnds {
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
        plan = MapFaultPlan(m_planFile.c_str());
        setenv(kFaultPlan, m_planFile.c_str(), 1);
    }
    ~CFaults() override {
        unsetenv(kFaultPlan);
        fs::remove_all(m_seed);
    }

    // Files of a station that has been at work and ended in the middle of writing a record.
    void MakeSeed() {
        CStationProcess process;
        process.SetTime(kMidnight - 3605);
        process.RunPasses(1);
        RunSql(m_events, "UPDATE tagSOE SET id=" + std::to_string(kLastSeedEvent));
        RunSql(m_history,
               "WITH RECURSIVE h(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM h WHERE i<" +
                   std::to_string(kSeedHours - 1) +
                   ") INSERT INTO tagYC (portNo, sendcount, mvalue, timestamp) SELECT 1,i=0,7,"
                   "printf('2024-03-04 %02d:00:00',i) FROM h UNION ALL SELECT 2,1,7,'2024-03-04 00:00:00'");
        EXPECT_TRUE(process.RunIntoKill(20, 60));
        EXPECT_TRUE(fs::exists(m_history + "-journal"));
        fs::copy(kAppDirectory, m_seed);
    }

    // The day, on the seed's files, with a strike at the `nth` call. One in the start may end the process, as
    // a database that cannot be opened does, or leave it without its points; one in the loop may not.
    void RunDay(CStationProcess& process, std::uint32_t nth, bool always) {
        fs::remove_all(kAppDirectory);
        fs::copy(m_seed, kAppDirectory);
        msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
        SetAll(0);
        process.SetTime(kMidnight - 2);
        SendFrame(SettingsFrame({1000, 5, 5, 5, 5, 10, 60}));
        struct Step {
            int rounds;  // of passes, the pauses between charging records among them; zor_main then reads
            Results brings;
            std::function<void()> act;
        };
        const Step day[] = {
            {1, {}, [] {}},
            {2, {kPoints, 1}, [this] { SetAll(1); }},
            {4, {0, 0, 2}, [] {}},  // midnight
            {12, {0, 0, 0, 0, kSeedHours}, [] { SendFrame(Hex("08 00 85 2c 01 04 03 24 20 18")); }},
            {4, {0, 0, 0, 0, 1}, [] { SendFrame(Hex("08 00 85 2c 02 04 03 24 20 17")); }},
            {6, {0, 0, 0, 1}, [] { SendFrame(Hex("0b 00 85 2f 01 00 00 00 06 03 24 20 00")); }},
            {12, {}, [&] { process.SetTime(kMidnight + 2400); }},
            {2, {kPoints}, [this] { SetAll(0); }},
        };
        *plan = {GetParam().fault, nth, always ? 1U : 0U, GetParam().error, 0, 0, UINT32_MAX};
        int status = 0;
        bool alive = true;
        expected = kSeed;
        sent = 0;
        for (const Step& step : day) {
            const std::uint32_t hits = plan->hits;
            step.act();
            for (int round = 0; round < step.rounds; ++round) {
                alive = alive && process.RunOrEnd(5, status);
                for (const Received& received : ReadAll()) sent += received.Code() == kCodeA1_16 ? 1 : 0;
            }
            for (std::size_t i = 0; plan->startHits == 0 && plan->hits == hits && i < expected.size(); ++i)
                expected[i] += step.brings[i];
        }
        EXPECT_EQ(plan->startHits != UINT32_MAX, alive) << "the loop ended";
        EXPECT_EQ(0, status) << process.Errors();
        plan->nth = 0;
    }

    // What every step brings that was not struck is there, stored once, and no file is damaged.
    void CheckFiles() const {
        for (const std::string& file : {m_events, m_history})
            EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), testing::ElementsAre("ok"));
        const auto count = [](const std::string& file, const std::string& rows) {
            return QueryNumber(file, "SELECT count(*) FROM " + rows);
        };
        const Results found = {
            count(m_events, "tagSOE"), count(m_events, "tagErrMsg"), count(m_history, "tagYC"),
            1 - count(m_history, "tagYC WHERE portNo=1 AND timestamp LIKE '2024-03-06%' AND sendcount>0"),
            sent};
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_LE(plan->hits > 0 ? expected[i] : kAll[i], found[i]) << i;
            // What was not acknowledged for a strike is sent again.
            if (plan->hits == 0 || i != kSent) {
                EXPECT_GE(kAll[i], found[i]) << i;
            }
        }
        EXPECT_EQ(kLastSeedEvent, QueryNumber(m_events, "SELECT max(id)-count(*)+1 FROM tagSOE"));
        EXPECT_EQ(kSeed[2], count(m_history, "tagYC WHERE mvalue=7"));
        EXPECT_EQ(kPoints, count(AppFile(kPointSettingFile), "tagPS_YX_DC"));
    }
    // Events are stored and reports sent.
    void CheckWork(CStationProcess& process) {
        SetAll(0);
        SendFrame(SettingsFrame());
        process.RunPasses(12);
        ReadAll();
        const int before = QueryNumber(m_events, "SELECT count(*) FROM tagSOE");
        SetAll(1);
        process.RunPasses(12);
        EXPECT_EQ(before + kPoints, QueryNumber(m_events, "SELECT count(*) FROM tagSOE"));
        EXPECT_FALSE(ReadAll().empty());
    }
    void SetAll(std::uint8_t state) {
        for (int point = kFirstPoint; point < kFirstPoint + kPoints; ++point) live.SetSignal(point, state);
        live.SetGunState(1, state);
    }

    FaultPlan* plan = nullptr;
    CLiveValues live;
    Results expected{};
    int sent = 0;

  private:
    const std::string m_events = AppFile(kEventFile);
    const std::string m_history = AppFile(kHistoryFile);
    const std::string m_planFile = std::string(kScratchDirectory) + "fault-plan";
    const std::string m_seed = std::string(kScratchDirectory) + "seed";
};
using Faults = CFaults;

TEST_P(Faults, CostNothingThatIsStored) {
    const char* wanted = std::getenv("ZOR_FAULTS");
    const std::uint32_t stride = wanted != nullptr && std::strcmp(wanted, "all") == 0 ? 1 : GetParam().stride;
    for (const bool always : {false, true}) {
        for (std::uint32_t nth = 1;; nth += stride) {
            SCOPED_TRACE((always ? "from call " : "call ") + std::to_string(nth));
            auto process = std::make_unique<CStationProcess>();
            RunDay(*process, nth, always);
            CheckFiles();
            if (plan->hits == 0) break;
            if (plan->startHits > 0) process = std::make_unique<CStationProcess>();
            CheckWork(*process);
        }
        std::printf("%u calls\n", plan->calls);
        EXPECT_LE(GetParam().calls, plan->calls);
    }
}

INSTANTIATE_TEST_SUITE_P(Calls, Faults, testing::ValuesIn(kKinds), testing::PrintToStringParamName());

}  // namespace
