// The events of one walk over the status points: one transaction, and what becomes of it when others use the
// file.
#include <gmock/gmock.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "points/PointSettings.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string kLocked = "insert into zorsoe.db error!: database is locked\n";

class CEvents : public CStationTest {
  protected:
    CEvents() {
        Printed([this] { runtime.InitSOE(); });
        YxPointRecord record{};
        for (record.pointNumber = 101; record.pointNumber <= 103; ++record.pointNumber)
            AppendYxPoint(runtime.m_yxPoints, record, 1);
    }

    // One tick of the detection, with all three points in this state.
    std::string Walk(std::uint8_t state) {
        for (int point = 101; point <= 103; ++point) live.SetSignal(point, state);
        return Printed([this] { runtime.DetectStatusChanges(); });
    }
    // The points of the events stored, which go.
    std::string TakeEvents() {
        const std::string points =
            QueryRows(path, "SELECT group_concat(id || ':' || point_no) FROM tagSOE WHERE id>1").front();
        RunSql(path, "DELETE FROM tagSOE WHERE id>1");
        return points;
    }

    const std::string path = AppFile(kEventFile);
    const std::string all = "2:101,3:102,4:103";
    CSqlWatch watch;
};
using Events = CEvents;

TEST_F(Events, OneTransactionPerWalk) {
    RunSql(path, "INSERT INTO tagSOE(id) VALUES (100002)");
    watch.Take();
    Walk(1);
    const auto insert = [](const std::string& id, const std::string& point) {
        return "INSERT INTO tagSOE values('" + id + "','[Normal] 0 -> 1','1','" + point +
               "','0','2024-03-05 09:45:00')";
    };
    EXPECT_THAT(watch.Take(),
                ElementsAre("begin immediate transaction", "select * from tagSOE order by id desc limit 1",
                            "DELETE FROM tagSOE WHERE id<=1", insert("100003", "101"),
                            "DELETE FROM tagSOE WHERE id<=2", insert("100004", "102"),
                            "DELETE FROM tagSOE WHERE id<=3", insert("100005", "103"), "commit transaction",
                            "VACUUM"));
    Walk(1);
    EXPECT_THAT(watch.Take(), IsEmpty());  // nothing changed, nothing opened
    TakeEvents();
    Walk(0);
    EXPECT_THAT(watch.Take(), Not(Contains("VACUUM")));
}

TEST_F(Events, CommitThatFails) {
    auto reader = std::make_unique<CForeignLock>(path, CForeignLock::kReader);
    watch.Before("rollback", [&] { reader.reset(); });
    Walk(1);
    EXPECT_EQ("", errors);
    EXPECT_EQ(1000000, FakeClock::Slept());
    EXPECT_EQ(all, TakeEvents());
    // A reader that stays: the events are lost, the next walk's are not.
    reader = std::make_unique<CForeignLock>(path, CForeignLock::kReader);
    Walk(0);
    EXPECT_EQ(kLocked + kLocked + kLocked, errors);
    EXPECT_EQ(2000000, FakeClock::Slept());
    reader.reset();
    Walk(1);
    EXPECT_EQ(all, TakeEvents());
}

TEST_F(Events, LockOfHalfASecondCostsNothing) {
    for (const char* kind : {CForeignLock::kReader, CForeignLock::kWriter}) {
        auto lock = std::make_unique<CForeignLock>(path, kind);
        FakeClock::Set(FakeClock::kStart);
        FakeClock::After(500000, [&] { lock.reset(); });
        Walk(1);
        EXPECT_EQ("", errors);
        EXPECT_GT(700000, FakeClock::Slept());
        EXPECT_THAT(watch.Take(), Not(Contains(HasSubstr("rollback"))));
        EXPECT_EQ(all, TakeEvents());
        Walk(0);
        TakeEvents();
    }
}

TEST_F(Events, TableThatIsLockedAtStartUpIsNotAnOldOne) {
    RunSql(path, "DELETE FROM tagSOE");  // start-up would drop it
    std::unique_ptr<CForeignLock> lock;
    watch.Before("select", [&] { lock = std::make_unique<CForeignLock>(path, CForeignLock::kWriter); });
    EXPECT_THAT(Printed([this] { runtime.InitSOE(); }), HasSubstr("sqlite3_get_table Fail:\n"));
    EXPECT_THAT(watch.Take(), Not(Contains("DROP TABLE tagSOE")));
}

// A start-up step that cannot open its file ends the process.
TEST_F(Events, NotOpened) {
    std::filesystem::remove_all(kAppDirectory);
    for (int (CRuntimeData::*step)() :
         {&CRuntimeData::InitSOE, &CRuntimeData::InitPointSettingYX, &CRuntimeData::InitPointSettingYC,
          &CRuntimeData::LoadRealTimeYc, &CRuntimeData::InitYcHistoryDatabase})
        EXPECT_EXIT((runtime.*step)(), testing::ExitedWithCode(0),
                    "^Can't open database: unable to open database file\n$");
}

}  // namespace
