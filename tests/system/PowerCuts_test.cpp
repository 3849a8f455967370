// The power fails at any moment of a burst of events or of an hourly step: what the real program wrote is
// played back up to there, with what was not synced by then lost, kept or torn.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "System/AppFiles.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr int kPoints = 200;
constexpr int kTries = 40;               // at each change
constexpr std::size_t kCuts = 1000;      // that differ, at least, in each test
constexpr std::size_t kSector = 512;     // what a device writes wholly or not at all
constexpr std::size_t kDirectory = 0;    // its inode
enum EWay { kLosesAll, kLosesNothing };  // that was not synced; in all other ways chance decides

struct Change {
    EChange kind;
    std::string path;
    std::size_t inode;
    std::size_t offset;
    std::string data;
    std::size_t syncedAt = SIZE_MAX;  // place in the record of the sync that makes it safe

    // What has to be synced for it: for a name that is the directory.
    std::size_t Holder() const {
        return kind == EChange::Create || kind == EChange::Remove ? kDirectory : inode;
    }
};

std::vector<Change> ReadRecord(const std::string& record) {
    std::ifstream in(record, std::ios::binary);
    std::vector<Change> changes;
    std::map<std::string, std::size_t> inodes = {{"/mnt/nandflash/app", kDirectory}};
    std::map<int, std::string> open;  // paths by descriptor
    FileChange change{};
    while (in.read(reinterpret_cast<char*>(&change), sizeof change)) {
        std::string data(change.size, '\0');
        in.read(data.data(), static_cast<std::streamsize>(change.size));
        if (change.kind <= EChange::Create) open[change.file] = data;
        const std::string path = change.kind == EChange::Remove ? data : open[change.file];
        if (change.kind == EChange::Create || inodes.count(path) == 0) inodes[path] = changes.size() + 1;
        const std::size_t inode = inodes[path];
        for (Change& earlier : changes)
            if (change.kind == EChange::Sync && earlier.Holder() == inode)
                earlier.syncedAt = std::min(earlier.syncedAt, changes.size());
        changes.push_back({change.kind, path, inode, change.offset, data});
    }
    return changes;
}

class CPowerCuts : public testing::Test, CCleanBothEnds {
  protected:
    // Records what the program does to its files while `act` and `passes` follow each other so many times,
    // and before it in its start, which stays whole.
    void Record(int times, const std::function<void(int)>& act, std::uint32_t passes) {
        const std::string record = std::string(kScratchDirectory) + "record";
        setenv(kChangeRecord, record.c_str(), 1);
        CStationProcess process;
        process.RunPasses(1);
        m_start = ReadRecord(record).size();
        for (int i = 0; i < times; ++i) {
            act(i);
            process.RunPasses(passes);
        }
        unsetenv(kChangeRecord);
        m_changes = ReadRecord(record);
        std::filesystem::remove(record);
    }

    // The files by path as they are after a cut behind change `last`.
    std::map<std::string, std::string> Cut(std::size_t last, int way) {
        std::map<std::string, std::size_t> names;
        std::map<std::size_t, std::string> contents;
        for (std::size_t i = 0; i <= last; ++i) {
            const Change& change = m_changes[i];
            const bool safe = i < m_start || change.syncedAt <= last || way == kLosesNothing;
            if (!safe && (way == kLosesAll || m_random() % 2 == 0)) continue;
            const bool torn = !safe && m_random() % 2 == 0;
            std::string& content = contents[change.inode];
            if (change.kind == EChange::Create) names[change.path] = change.inode;
            if (change.kind == EChange::Remove) names.erase(change.path);
            if (change.kind == EChange::Cut) content.resize(change.offset);
            if (change.kind != EChange::Put) continue;
            content.resize(std::max<std::size_t>(content.size(), change.offset + change.data.size()));
            for (std::size_t at = 0; at < change.data.size(); at += kSector)
                if (const std::string part = change.data.substr(at, kSector); !torn || m_random() % 2 == 0)
                    content.replace(change.offset + at, part.size(), part);
        }
        std::map<std::string, std::string> files;
        for (const auto& [path, inode] : names) files[path] = contents[inode];
        return files;
    }
    static void PutOnDisk(const std::map<std::string, std::string>& files) {
        std::filesystem::remove_all(kAppDirectory);
        std::filesystem::create_directories(kAppDirectory);
        for (const auto& [path, content] : files) WriteText(path, content);
    }

    // Cuts at every change of the record, in every way that chance finds. The rows of `table` must be those
    // of some commit, none that was safe may be missing, and all `commits` must be safe in the end.
    void CheckEveryCut(const char* name, const std::string& table, std::size_t commits) {
        const std::string file = AppFile(name);
        const auto rows = [&] { return QueryRows(file, "SELECT * FROM " + table); };
        PutOnDisk(Cut(m_start - 1, kLosesNothing));
        std::vector<std::pair<std::size_t, std::vector<std::string>>> commit = {{0, rows()}};  // where safe
        // What was safe, and what is on the disk: a cut that differs in neither tells nothing new.
        std::set<std::pair<std::ptrdiff_t, std::size_t>> cuts;
        for (std::size_t last = m_start; last < m_changes.size(); ++last) {
            if (m_changes[last].kind == EChange::Remove && m_changes[last].path == file + "-journal") {
                PutOnDisk(Cut(last, kLosesNothing));
                commit.emplace_back(m_changes[last].syncedAt, rows());
            }
            const auto unsafe = std::find_if(commit.begin(), commit.end(),
                                             [last](const auto& one) { return one.first > last; });
            for (int way = 0; way < kTries; ++way) {
                const auto files = Cut(last, way);
                std::string disk;
                for (const auto& [path, content] : files) disk += path + content;
                if (!cuts.insert({unsafe - commit.begin(), std::hash<std::string>()(disk)}).second) continue;
                SCOPED_TRACE("cut " + std::to_string(last) + ", way " + std::to_string(way));
                PutOnDisk(files);
                if (cuts.size() % 50 == 0) CStationProcess().RunPasses(1);  // a start keeps what there is
                EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), testing::ElementsAre("ok"));
                EXPECT_TRUE(std::any_of(unsafe - 1, commit.end(),
                                        [found = rows()](const auto& one) { return one.second == found; }));
            }
        }
        EXPECT_LE(kCuts, cuts.size());
        EXPECT_EQ(commits + 1, commit.size());
        EXPECT_GT(m_changes.size(), commit.back().first);
        std::printf("%zu cuts at %zu changes of %s\n", cuts.size(), m_changes.size() - m_start, name);
    }

    CLiveValues live;

  private:
    std::vector<Change> m_changes;
    std::size_t m_start = 0;
    std::mt19937 m_random{11};
};
using PowerCuts = CPowerCuts;

TEST_F(PowerCuts, BurstsOfEvents) {
    constexpr int kBursts = 6;
    MakePoints({YxRows(kPoints), {}});
    Record(
        kBursts,
        [this](int burst) {
            for (int point = 0; point < kPoints; ++point) live.SetSignal(point, burst % 2 == 0);
        },
        1);
    CheckEveryCut(kEventFile, "tagSOE", kBursts);
}

// All records of an hour, or none.
TEST_F(PowerCuts, HourlySteps) {
    constexpr int kHours = 6;
    MakeConfig(kPorts);
    Record(
        kHours, [](int) {}, 60 * 60 * 10);
    CheckEveryCut(kHistoryFile, "tagYC", kHours);
}

}  // namespace
