// Events of the real program: bursts, locked files, sudden ends, full and read-only disks.
#include <gmock/gmock.h>
#include <sys/mount.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "System/AppFiles.h"
#include "tests/support/StationProcess.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::AnyOf;
using testing::ElementsAre;

constexpr int kManyPoints = 612;
constexpr int kSomePoints = 60;

// Something mounted while the object lives; it stays unmounted where the system refuses.
class CMounted {
  public:
    CMounted(const std::string& place, const char* type, const char* options) : m_place(place) {
        mounted = mount(type, place.c_str(), type, 0, options) == 0;
    }
    // Makes a single file read-only.
    explicit CMounted(const std::string& file) : m_place(file) {
        mounted = mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
                  mount(nullptr, file.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }
    ~CMounted() { umount2(m_place.c_str(), MNT_DETACH); }
    CMounted(const CMounted&) = delete;
    CMounted& operator=(const CMounted&) = delete;

    bool mounted = false;

  private:
    std::string m_place;
};

class CEventsStation : public testing::Test, CCleanBothEnds {
  protected:
    // A station with `points` status points, in falling order of their numbers. It has no configuration, and
    // so one port; deriving the key of one would take most of every start.
    void MakeStation(int points) {
        std::vector<std::string> rows = YxRows(points);
        std::reverse(rows.begin(), rows.end());
        MakePoints({rows, {}});
        m_points = points;
    }
    void SetAll(std::uint8_t state) {
        for (int point = 0; point < m_points; ++point) live.SetSignal(point, state);
    }
    // Number of a whole burst's events after the first `from` ids, or -1 where they are not complete, in list
    // order and numbered without a gap.
    int BurstAfter(int from) {
        const std::vector<std::string> rows = QueryRows(
            file, "SELECT id,event,value FROM tagSOE WHERE id>" + std::to_string(from) + " ORDER BY id");
        int point = m_points;
        int id = from;
        for (const std::string& row : rows)
            if (row != std::to_string(++id) + "|[Fault]Point " + std::to_string(--point) + " 0 -> 1|1")
                return -1;
        return point == 0 ? m_points : -1;
    }
    int LastId() { return std::stoi(QueryRows(file, "SELECT coalesce(max(id),0) FROM tagSOE").front()); }

    const std::string file = AppFile(kEventFile);
    CLiveValues live;
    CStationProcess process;

  private:
    int m_points = 0;
};
using Events = CEventsStation;

// How many lines `errors` has, all of them that of a failed insert for this reason; -1 with any other.
int InsertErrors(const std::string& errors, const std::string& why) {
    std::istringstream lines(errors);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        if (line != "insert into zorsoe.db error!: " + why) return -1;
    return count;
}

TEST_F(Events, BurstOfOneTick) {
    MakeStation(kManyPoints);
    process.RunPasses(1);
    EXPECT_EQ(1, LastId());
    SetAll(1);
    process.RunPasses(1);
    EXPECT_EQ(kManyPoints, BurstAfter(1));
    EXPECT_LE(1U, process.Syncs());
    EXPECT_GE(5U, process.Syncs());
    EXPECT_EQ(3U, QueryRows(file, "SELECT id FROM tagErrMsg").size());  // points 297, 425 and 553
    process.RunPasses(1);
    EXPECT_EQ(0U, process.FileCalls());
    EXPECT_EQ("", process.Errors());
}

TEST_F(Events, BurstOnAFileThatIsLockedForHalfASecond) {
    MakeStation(kManyPoints);
    process.RunPasses(1);
    int last = 1;
    for (const char* kind : {CForeignLock::kReader, CForeignLock::kWriter}) {
        auto lock = std::make_unique<CForeignLock>(file, kind);
        SetAll(1);
        process.RunFor(500000);
        lock.reset();
        process.RunPasses(1);
        EXPECT_LT(0U, process.FileCalls()) << kind;  // it was waiting in the middle of the tick
        EXPECT_EQ(kManyPoints, BurstAfter(last)) << kind;
        SetAll(0);
        process.RunPasses(1);
        last = LastId();
    }
    EXPECT_EQ(1 + 4 * kManyPoints, last);
    EXPECT_EQ("", process.Errors());
}

TEST_F(Events, KilledAtAnyMoment) {
    MakeStation(kSomePoints);
    SetAll(1);             // so that every start brings a burst
    process.RunPasses(1);  // makes the databases
    CStationProcess measured;
    measured.RunPasses(1);
    const std::uint32_t calls = measured.FileCalls();
    ASSERT_LT(10U, calls);
    const auto check = [this] {
        EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), ElementsAre("ok"));
        if (QueryRows(file, "SELECT name FROM sqlite_master WHERE name='tagSOE'").empty()) return;
        // Unique ids, and of every burst all or nothing.
        EXPECT_THAT(QueryRows(file, "SELECT count(*)-count(DISTINCT id), (count(*)-1)%" +
                                        std::to_string(kSomePoints) + " FROM tagSOE"),
                    ElementsAre(AnyOf("0|0", "0|-1")));
    };
    std::mt19937 random(7);
    int kills = 0;
    for (int i = 0; i < 200; ++i) {
        if (i % 20 == 0) std::filesystem::remove(file);  // start-up's own writes are struck as well
        CStationProcess fresh;
        if (fresh.RunIntoKill(static_cast<std::uint32_t>(1 + random() % calls))) ++kills;
        if (i % 2 == 0) check();  // else the next start is the first to open the file again
    }
    EXPECT_LE(190, kills);
    CStationProcess last;
    last.RunPasses(1);
    check();
    const int before = LastId();
    SetAll(0);
    last.RunPasses(1);
    EXPECT_EQ(before + kSomePoints, LastId());
    EXPECT_EQ("", last.Errors());
}

TEST_F(Events, FullDisk) {
    const CMounted disk(kAppDirectory, "tmpfs", "size=1m");
    if (!disk.mounted) GTEST_SKIP() << "mounting is refused";
    MakeStation(kSomePoints);
    process.RunPasses(1);
    const std::string filler = AppFile("filler");
    constexpr int kPage = 4096;
    std::size_t errorsSeen = 0;
    int lost = 0;
    for (int room = 0; room < 8; ++room) {
        {
            std::ofstream fill(filler);
            const std::string page(kPage, 'x');
            while (fill << page << std::flush) {
            }
        }
        std::filesystem::resize_file(filler, std::filesystem::file_size(filler) / kPage * kPage -
                                                 static_cast<std::size_t>(room * kPage));
        int before = LastId();
        SetAll(1);
        process.RunPasses(1);
        const int stored = LastId() - before;
        lost += kSomePoints - stored;
        // Each event that is missing was reported; one that ended the burst's transaction twice.
        const std::string errors = process.Errors().substr(errorsSeen);
        EXPECT_THAT(InsertErrors(errors, "database or disk is full") - (kSomePoints - stored), AnyOf(0, 1))
            << errors;
        errorsSeen += errors.size();
        EXPECT_THAT(QueryRows(file, "PRAGMA integrity_check"), ElementsAre("ok"));

        std::filesystem::remove(filler);
        SetAll(0);
        before = LastId();
        process.RunPasses(1);
        EXPECT_EQ(before + kSomePoints, LastId()) << room;
    }
    EXPECT_LT(kSomePoints, lost);
    EXPECT_EQ(errorsSeen, process.Errors().size());
}

TEST_F(Events, ReadOnlyFile) {
    MakeStation(kSomePoints);
    process.RunPasses(1);
    {
        const CMounted readOnly(file);
        if (!readOnly.mounted) GTEST_SKIP() << "mounting is refused";
        SetAll(1);
        process.RunPasses(1);
    }
    EXPECT_EQ(1, LastId());
    EXPECT_EQ(kSomePoints, InsertErrors(process.Errors(), "attempt to write a readonly database"));
    SetAll(0);
    process.RunPasses(1);
    EXPECT_EQ(1 + kSomePoints, LastId());
}

}  // namespace
