// A day of the real program in which one call fails, or all from there on: every call of a kind that the day
// makes, of the allocations one in 43 unless ZOR_FAULTS is set.
#include <sys/msg.h>

#include <array>
#include <filesystem>

#include "app/ConfigDatabase.h"
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
    ECall call;
    int error;
};
void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}
constexpr Kind kKinds[] = {
    {"Open", ECall::Open, EIO},        {"Write", ECall::Write, ENOSPC}, {"Sync", ECall::Sync, EIO},
    {"Unlink", ECall::Unlink, EIO},    {"Queue", ECall::Queue, EINTR},
#ifndef ZOR_ADDRESS_SANITIZER  // which has an allocator of its own
    {"Malloc", ECall::Malloc, ENOMEM},
#endif
};

// Events, measurements at a fault, records, acknowledged records, charging records sent: those of the seed,
// and those of the day.
constexpr int kSeedHours = 12;
using Results = std::array<int, 5>;
constexpr std::size_t kSent = 4;
constexpr Results kSeed = {1, 0, kSeedHours + 1, 0, 0};
constexpr Results kAll = {1 + 2 * kPoints, 1, kSeedHours + 3, 1, kSeedHours + 8};

class CFaults : public testing::TestWithParam<Kind>, CleanBothEnds {
  protected:
    // Files of a station that has been at work and ended in the middle of writing a record.
    CFaults() {
        RunSql(AppFile(kConfigFile),
               "PRAGMA kdf_iter=2; CREATE TABLE tagSystem (name, value);"
               "INSERT INTO tagSystem VALUES ('chargport_number', '2')",
               kConfigKey);
        std::vector<std::string> yx = YxRows(kPoints - 1, kFirstPoint);
        yx.push_back("1,'reported',3," + std::to_string(kFirstPoint + kPoints - 1) + ",'true',77,0");
        MakePoints({yx, {"1,'a',72,0,50,0.1,0,0,0", "2,'b',101,0,50,1,0,0,0"}});
        CStationProcess process;
        process.SetTime(kMidnight - 3605);
        process.Plan().call = ECall::Unlink;
        process.RunPasses(1);
        RunSql(m_events, "UPDATE tagSOE SET id=" + std::to_string(kLastSeedEvent));
        RunSql(m_history,
               "WITH RECURSIVE h(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM h WHERE i<" +
                   std::to_string(kSeedHours - 1) +
                   ") INSERT INTO tagYC (portNo, sendcount, mvalue, timestamp) SELECT 1,i=0,7,"
                   "printf('2024-03-04 %02d:00:00',i) FROM h UNION ALL SELECT 2,1,7,'2024-03-04 00:00:00'");
        process.Plan().nth = process.Plan().calls + 1;
        process.Plan().count = 1;
        EXPECT_EQ(-SIGKILL, process.Run(60));
        EXPECT_TRUE(fs::exists(m_history + "-journal"));
        fs::copy(kAppDirectory, m_seed);
    }
    ~CFaults() override { fs::remove_all(m_seed); }

    // The day, on the seed's files, with a strike at the `nth` call. One in the start may end the process, as
    // a database that cannot be opened does, or leave it without its points; one in the loop may not.
    void RunDay(CStationProcess& process, std::uint32_t nth, std::uint32_t count) {
        fs::remove_all(kAppDirectory);
        fs::copy(m_seed, kAppDirectory);
        msgctl(msgget(kQueueKey, 0), IPC_RMID, nullptr);
        SetAll(0);
        SendFrame(SettingsFrame({1000, 5, 5, 5, 5, 10, 60}));
        const struct {
            int rounds;  // of passes, the pauses between charging records among them; zor_main then reads
            Results brings;
            std::function<void()> act;
        } kDay[] = {
            {1, {}, [] {}},
            {2, {kPoints, 1}, [this] { SetAll(1); }},
            {4, {0, 0, 2}, [] {}},  // midnight
            {12, {0, 0, 0, 0, kSeedHours}, [] { SendFrame(Hex("08 00 85 2c 01 04 03 24 20 18")); }},
            {4, {0, 0, 0, 0, 1}, [] { SendFrame(Hex("08 00 85 2c 02 04 03 24 20 17")); }},
            {6, {0, 0, 0, 1}, [] { SendFrame(Hex("0b 00 85 2f 01 00 00 00 06 03 24 20 00")); }},
            {12, {}, [&] { process.SetTime(kMidnight + 2400); }},
            {2, {kPoints}, [this] { SetAll(0); }},
        };
        HookPlan& plan = process.Plan();
        plan = {(kMidnight - 2) * 1000000, 0, GetParam().call, nth, count, GetParam().error};
        std::optional<int> status;
        expected = kSeed;
        sent = 0;
        for (const auto& step : kDay) {
            const std::uint32_t hits = plan.hits;
            step.act();
            for (int round = 0; round < step.rounds; ++round) {
                if (!status) status = process.Run(5);
                for (const std::string& message : ReadNamed())
                    sent += message.rfind("A1_16 ", 0) == 0 ? 1 : 0;
            }
            // One commit of events that fails costs none: the next pass stores them.
            const bool struckCommit = count == 1 && plan.call >= ECall::Write && plan.call <= ECall::Unlink;
            for (std::size_t i = 0; plan.startHits == 0 && i < expected.size(); ++i)
                if (plan.hits == hits || (struckCommit && i == 0)) expected[i] += step.brings[i];
        }
        EXPECT_EQ(plan.startHits != ~0U, !status) << "the loop ended";
        EXPECT_EQ(0, status.value_or(0)) << process.Errors();
        plan.nth = 0;
    }

    // What every step brings that was not struck is there, stored once, and no file is damaged.
    void CheckFiles(bool struck) const {
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
            EXPECT_LE(struck ? expected[i] : kAll[i], found[i]) << i;
            // What was not acknowledged for a strike is sent again.
            EXPECT_TRUE(kAll[i] >= found[i] || (struck && i == kSent)) << i;
        }
        EXPECT_EQ(kLastSeedEvent, QueryNumber(m_events, "SELECT max(id)-count(*)+1 FROM tagSOE"));
        EXPECT_EQ(kSeed[2], count(m_history, "tagYC WHERE mvalue=7"));
        EXPECT_EQ(kPoints, count(AppFile(kPointSettingFile), "tagPS_YX_DC"));
    }
    // Events are stored and reports sent.
    void CheckWork(CStationProcess& process) {
        process.Plan().call = GetParam().call;
        SetAll(0);
        SendFrame(SettingsFrame());
        process.RunPasses(12);
        const std::size_t before = QueryRows(m_events, "SELECT id FROM tagSOE").size();
        SetAll(1);
        process.RunPasses(12);
        EXPECT_THAT(QueryRows(m_events, "SELECT id FROM tagSOE"), testing::SizeIs(before + kPoints));
        EXPECT_FALSE(ReadAll().empty());
    }
    void SetAll(std::uint8_t state) {
        for (int point = kFirstPoint; point < kFirstPoint + kPoints; ++point) live.SetSignal(point, state);
        live.SetGunState(1, state);
    }

    CLiveValues live;
    Results expected{};
    int sent = 0;

  private:
    const std::string m_events = AppFile(kEventFile);
    const std::string m_history = AppFile(kHistoryFile);
    const std::string m_seed = std::string(kScratchDirectory) + "seed";
};
using Faults = CFaults;

TEST_P(Faults, CostNothingThatIsStored) {
    const bool all = GetParam().call != ECall::Malloc || std::getenv("ZOR_FAULTS") != nullptr;
    for (const std::uint32_t count : {1U, ~0U}) {
        std::uint32_t calls = 0;
        for (std::uint32_t nth = 1, hits = 1; hits > 0; nth += all ? 1 : 43) {
            SCOPED_TRACE("from call " + std::to_string(nth) + ", as many as " + std::to_string(count));
            CStationProcess process;
            RunDay(process, nth, count);
            hits = process.Plan().hits;
            calls = process.Plan().calls;
            CheckFiles(hits > 0);
            CStationProcess next;
            CheckWork(process.Plan().startHits > 0 ? next : process);
        }
        EXPECT_LT(8U, calls);
    }
}

INSTANTIATE_TEST_SUITE_P(Calls, Faults, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
