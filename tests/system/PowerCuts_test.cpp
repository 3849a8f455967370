// The power fails at any moment of a burst of events or of an hourly step: what the real program wrote is
// played back up to there, with what was not synced by then lost, kept or torn.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr int kPoints = 200;
constexpr int kTries = 40;               // at each change
constexpr std::size_t kCuts = 1000;      // that differ, at least, in each test
constexpr std::size_t kSector = 512;     // what a device writes wholly or not at all
enum EWay { kLosesAll, kLosesNothing };  // that was not synced; in all other ways chance decides

using Files = std::map<std::string, std::string>;  // contents by path

struct Change : FileChange {
    std::string data;
    std::size_t syncedAt = SIZE_MAX;  // place in the record of the sync that makes it safe

    // Names are safe with their directory, all else with its file.
    bool IsMadeSafeBy(const FileChange& sync) const {
        const bool isName = kind == EChange::Create || kind == EChange::Remove;
        return isName ? sync.kind == EChange::SyncDirectory
                      : sync.kind == EChange::Sync && sync.inode == inode;
    }
};

struct PowerCuts : testing::Test, CleanBothEnds {
    // Records what the program does to its files while `act` and `passes` follow each other so many times,
    // and before it in its start, which stays whole.
    void Record(int times, const std::function<void(int)>& act, std::uint32_t passes) {
        WriteText(kChangeRecord, "");
        CStationProcess process;
        process.RunPasses(1);
        ReadRecord();
        start = changes.size();
        for (int i = 0; i < times; ++i) {
            act(i);
            process.RunPasses(passes);
        }
        ReadRecord();
        std::filesystem::remove(kChangeRecord);
    }
    void ReadRecord() {
        std::ifstream in(kChangeRecord, std::ios::binary);
        changes.clear();
        for (Change change{}; in.read(reinterpret_cast<char*>(&change), sizeof(FileChange));
             changes.push_back(change)) {
            change.data.resize(change.size);
            in.read(change.data.data(), static_cast<std::streamsize>(change.size));
            for (Change& earlier : changes)
                if (earlier.IsMadeSafeBy(change))
                    earlier.syncedAt = std::min(earlier.syncedAt, changes.size());
        }
    }

    // The files as they are after a cut behind change `last`.
    Files Cut(std::size_t last, int way) {
        std::map<std::string, std::uint32_t> inodes;
        std::map<std::uint32_t, std::string> contents;
        for (std::size_t i = 0; i <= last; ++i) {
            const Change& change = changes[i];
            const bool safe = i < start || change.syncedAt <= last || way == kLosesNothing;
            if (!safe && (way == kLosesAll || random() % 2 == 0)) continue;
            const bool torn = !safe && random() % 2 == 0;
            std::string& content = contents[change.inode];
            if (change.kind == EChange::Create) inodes[change.path] = change.inode;
            if (change.kind == EChange::Remove) inodes.erase(change.path);
            if (change.kind == EChange::Cut) content.resize(change.offset);
            if (change.kind != EChange::Put) continue;
            content.resize(std::max<std::size_t>(content.size(), change.offset + change.data.size()));
            for (std::size_t at = 0; at < change.data.size(); at += kSector)
                if (const std::string part = change.data.substr(at, kSector); !torn || random() % 2 == 0)
                    content.replace(change.offset + at, part.size(), part);
        }
        Files files;
        for (const auto& [path, inode] : inodes) files[path] = contents[inode];
        return files;
    }
    static void PutOnDisk(const Files& files) {
        std::filesystem::remove_all(kAppDirectory);
        std::filesystem::create_directories(kAppDirectory);
        for (const auto& [path, content] : files) WriteText(path, content);
    }

    // Cuts at every change of the record, in every way that chance finds. The rows of `table` must be those
    // of some commit, none that was safe may be missing, and all `commits` must be safe in the end.
    void CheckEveryCut(const char* name, const std::string& table, std::size_t commits) {
        const std::string file = AppFile(name);
        const auto rows = [&] { return QueryRows(file, "SELECT * FROM " + table); };
        PutOnDisk(Cut(start - 1, kLosesNothing));
        std::vector<std::pair<std::size_t, std::vector<std::string>>> commit = {{0, rows()}};  // where safe
        // What was safe, and what is on the disk: a cut that differs in neither tells nothing new.
        std::set<std::pair<std::ptrdiff_t, Files>> cuts;
        for (std::size_t last = start; last < changes.size(); ++last) {
            if (changes[last].kind == EChange::Remove && changes[last].path == file + "-journal") {
                PutOnDisk(Cut(last, kLosesNothing));
                commit.emplace_back(changes[last].syncedAt, rows());
            }
            const auto unsafe = std::find_if(commit.begin(), commit.end(),
                                             [last](const auto& one) { return one.first > last; });
            for (int way = 0; way < kTries; ++way) {
                const auto [cut, isNew] = cuts.emplace(unsafe - commit.begin(), Cut(last, way));
                if (!isNew) continue;
                SCOPED_TRACE("cut " + std::to_string(last) + ", way " + std::to_string(way));
                PutOnDisk(cut->second);
                if (cuts.size() % 50 == 0) CStationProcess().RunPasses(1);  // a start keeps what there is
                EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), testing::ElementsAre("ok"));
                EXPECT_TRUE(std::any_of(unsafe - 1, commit.end(),
                                        [found = rows()](const auto& one) { return one.second == found; }));
            }
        }
        EXPECT_LE(kCuts, cuts.size());
        EXPECT_GE(30 * commits, changes.size() - start) << "more than the commits need";
        EXPECT_EQ(commits + 1, commit.size());
        EXPECT_GT(changes.size(), commit.back().first);
        std::printf("%zu cuts at %zu changes of %s\n", cuts.size(), changes.size() - start, name);
    }

    CLiveValues live;
    std::vector<Change> changes;
    std::size_t start = 0;
    std::mt19937 random{11};
};

TEST_F(PowerCuts, BurstsOfEvents) {
    constexpr int kBursts = 6;
    MakePoints({YxRows(kPoints), {}});
    const auto burst = [this](int number) {
        for (int point = 0; point < kPoints; ++point) live.SetSignal(point, number % 2 == 0);
    };
    Record(kBursts, burst, 1);
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
