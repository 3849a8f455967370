// One walk over the status points: what counts as a change, and how the events of a walk reach the file.
#include <filesystem>

#include "tests/unit/events/EventTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CStatusChanges : public CEventTest {
  protected:
    CStatusChanges() {
        Init();
        runtime.m_yxPoints.clear();
    }

    // Three points, 101 to 103, that are all on; the next walk sees three changes.
    void RaiseThree(const char* middleName = "B") {
        AddPoint("A", 5, 101);
        AddPoint(middleName, 5, 102);
        AddPoint("C", 5, 103);
        for (const int point : {101, 102, 103}) live.SetSignal(point, 1);
        watch.Take();
    }
    void SetStates(std::uint8_t state) {
        for (const YxPointRecord& point : runtime.m_yxPoints) live.SetSignal(point.pointNumber, state);
    }
    std::vector<std::string> Texts() const {
        return QueryRows(path, "SELECT id || event FROM tagSOE WHERE id>1");
    }
};
using StatusChanges = CStatusChanges;

const std::vector<std::string> kAllThree = {"2[Fault]A 0 -> 1", "3[Fault]B 0 -> 1", "4[Fault]C 0 -> 1"};

TEST_F(StatusChanges, LevelsAndTransitions) {
    struct Case {
        int level;
        std::vector<std::uint8_t> states;
        std::vector<std::string> events;
    };
    const Case cases[] = {
        {4, {1, 1, 0, 0}, {"[Warning]Door 0 -> 1|1", "[Warning]Door 1 -> 0|0"}},
        {5, {2, 1, 0}, {"[Fault]Door 0 -> 1|2", "[Fault]Door 1 -> 0|0"}},
        {6,
         {1, 2, 0, 255},
         {"[Emergency]Door 0 -> 1|1", "[Emergency]Door 0 -> 1|2", "[Emergency]Door 1 -> 0|0",
          "[Emergency]Door 0 -> 1|255"}},
        {3, {1}, {"[Normal]Door 0 -> 1|1"}},
        {7, {1}, {"[Normal]Door 0 -> 1|1"}},
        {-4, {1}, {"[Normal]Door 0 -> 1|1"}},
        {5, {0, 0}, {}},
    };
    for (const Case& c : cases) {
        runtime.m_yxPoints.clear();
        AddPoint("Door", c.level, 120);
        RunSql(path, "DELETE FROM tagSOE WHERE id>1");
        for (const std::uint8_t state : c.states) {
            live.SetSignal(120, state);
            Walk();
            EXPECT_EQ(state, runtime.m_yxPoints.front().previous);
        }
        std::vector<std::string> events = Soe("event || '|' || value");
        events.erase(events.begin());
        EXPECT_EQ(c.events, events);
    }
}

TEST_F(StatusChanges, SecondTable) {
    AddPoint("First", 5, 7, kSourceYx);
    AddPoint("Second", 5, 7, kSourceYx2);
    live.SetSignal2(7, 3);
    Walk();
    EXPECT_THAT(Soe("event,value,point_no,yx_table"),
                ElementsAre("SOE database init!|0|0|0", "[Fault]Second 0 -> 1|3|7|1"));
}

TEST_F(StatusChanges, WalkStopsSilently) {
    struct Case {
        int point;
        int source;
    };
    for (const Case& c :
         {Case{50, 2}, Case{50, -1}, Case{8192, kSourceYx}, Case{-1, kSourceYx2}, Case{INT32_MIN, 0}}) {
        runtime.m_yxPoints.clear();
        RunSql(path, "DELETE FROM tagSOE WHERE id>1");
        AddPoint("Before", 5, 101);
        AddPoint("Stop", 5, c.point, c.source);
        AddPoint("Behind", 5, 102);
        live.SetSignal(101, 1);
        live.SetSignal(102, 1);
        const Captured printed = Walk();
        EXPECT_EQ(ReadLine(1), printed.out);
        EXPECT_EQ("", printed.err);
        EXPECT_THAT(Texts(), ElementsAre("2[Fault]Before 0 -> 1"));
        EXPECT_EQ(0, runtime.m_yxPoints.back().current);
    }
}

TEST_F(StatusChanges, OneTransactionPerWalk) {
    RaiseThree();
    RunSql(path, "INSERT INTO tagSOE VALUES (100002,'old',0,0,0,'t')");
    watch.Take();
    EXPECT_EQ(ReadLine(100002) + ReadLine(100003) + ReadLine(100004), Walk().out);
    const auto insert = [this](int id, const std::string& name, int point) {
        return "INSERT INTO tagSOE values('" + std::to_string(id) + "','[Fault]" + name + " 0 -> 1','1','" +
               std::to_string(point) + "','0','" + now + "')";
    };
    EXPECT_THAT(watch.Take(),
                ElementsAre("begin immediate transaction",                                               //
                            kSelectLastSoe, "DELETE FROM tagSOE WHERE id<=1", insert(100003, "A", 101),  //
                            "DELETE FROM tagSOE WHERE id<=2", insert(100004, "B", 102),                  //
                            "DELETE FROM tagSOE WHERE id<=3", insert(100005, "C", 103),                  //
                            "commit transaction", "VACUUM"));
    Walk();
    EXPECT_THAT(watch.Take(), IsEmpty());  // nothing changed, nothing opened
}

TEST_F(StatusChanges, FailedStatementLosesItsOwnEvent) {
    RaiseThree("x','0','0','0','t'); DROP TABLE tagSOE; --");
    EXPECT_EQ(InsertError("a value holds an apostrophe"), Walk().err);
    EXPECT_THAT(Texts(), ElementsAre("2[Fault]A 0 -> 1", "3[Fault]C 0 -> 1"));

    RunSql(path,
           "CREATE TRIGGER t BEFORE INSERT ON tagSOE WHEN new.point_no=101 BEGIN "
           "SELECT RAISE(ABORT, 'refused'); END");
    SetStates(0);
    EXPECT_EQ(InsertError("refused") + InsertError("a value holds an apostrophe"), Walk().err);
    EXPECT_THAT(Texts(), Contains("4[Fault]C 1 -> 0"));
    EXPECT_EQ(4U, Soe().size());
}

TEST_F(StatusChanges, TransactionThatEndsUnasked) {
    RunSql(path,
           "CREATE TRIGGER t BEFORE INSERT ON tagSOE WHEN new.point_no=265 BEGIN "
           "SELECT RAISE(ROLLBACK, 'no room'); END");
    AddPoint("A", 5, 101);
    AddPoint("Counted", 5, 265);
    AddPoint("C", 5, 103);
    SetStates(1);
    EXPECT_EQ(InsertError("no room") + InsertError("no room"), Walk().err);  // once more when it stands alone
    EXPECT_THAT(Texts(), ElementsAre("2[Fault]A 0 -> 1", "3[Fault]C 0 -> 1"));
    EXPECT_EQ(1, runtime.k1Cnt[2]);
    SetStates(0);
    Walk();
    EXPECT_THAT(Texts(), Contains("5[Fault]C 1 -> 0"));
}

// The statement that ends it need not be that of the event itself.
TEST_F(StatusChanges, TransactionThatEndsBeforeTheEventIsStored) {
    const struct {
        const char* trigger;
        int errors;
    } kCases[] = {
        {"CREATE TRIGGER t BEFORE INSERT ON tagErrMsg BEGIN SELECT RAISE(ROLLBACK, 'no room'); END", 2},
        {"CREATE TRIGGER t BEFORE DELETE ON tagErrMsg BEGIN SELECT RAISE(ROLLBACK, 'no room'); END", 2},
        {"CREATE TRIGGER t BEFORE DELETE ON tagSOE BEGIN SELECT RAISE(ROLLBACK, 'no room'); END", 3},
    };
    AddPoint("A", 5, 101);
    AddPoint("Port fault", 5, 297);
    AddPoint("C", 5, 103);
    for (const auto& item : kCases) {
        std::filesystem::remove(path);
        Capture([this] { runtime.InitSOE(); });
        RunSql(path,
               "INSERT INTO tagErrMsg VALUES (1,'old','t'),(100002,'old','t');"
               "INSERT INTO tagSOE VALUES (100002,'old',0,0,0,'t')");
        RunSql(path, item.trigger);
        SetStates(1);
        const std::string errors = Walk().err;
        const auto count = std::count(errors.begin(), errors.end(), '\n');
        EXPECT_LE(item.errors, count) << errors;
        EXPECT_THAT(
            QueryRows(path, "SELECT id||event FROM tagSOE WHERE id>100002"),
            ElementsAre("100003[Fault]A 0 -> 1", "100004[Fault]Port fault 0 -> 1", "100005[Fault]C 0 -> 1"))
            << item.trigger;
        SetStates(0);
        RunSql(path, "DROP TRIGGER t");
        Walk();
    }
}

TEST_F(StatusChanges, CommitThatFails) {
    RaiseThree();
    auto reader = std::make_unique<CForeignLock>(path, CForeignLock::kReader);
    watch.Take();
    watch.Before("rollback", [&] { reader.reset(); });
    EXPECT_EQ("", Walk().err);
    EXPECT_EQ(kAllThree, Texts());
    EXPECT_EQ(1000000, FakeClock::Slept());
    EXPECT_THAT(watch.Take(), Contains("rollback transaction"));

    // A reader that stays: the events are lost, the next walk's are not.
    reader = std::make_unique<CForeignLock>(path, CForeignLock::kReader);
    SetStates(0);
    const std::string locked = InsertError("database is locked");
    EXPECT_EQ(locked + locked + locked, Walk().err);
    EXPECT_EQ(2000000, FakeClock::Slept());
    reader.reset();
    SetStates(1);
    EXPECT_EQ("", Walk().err);
    EXPECT_EQ(7U, Soe().size());
}

TEST_F(StatusChanges, LockOfHalfASecondCostsNothing) {
    for (const char* kind : {CForeignLock::kReader, CForeignLock::kWriter}) {
        runtime.m_yxPoints.clear();
        RaiseThree();
        RunSql(path, "DELETE FROM tagSOE WHERE id>1");
        auto lock = std::make_unique<CForeignLock>(path, kind);
        watch.Take();
        FakeClock::Set(FakeClock::kStart);
        FakeClock::After(500000, [&] { lock.reset(); });
        EXPECT_EQ("", Walk().err);
        EXPECT_EQ(nullptr, lock);
        EXPECT_GT(700000, FakeClock::Slept());
        EXPECT_THAT(watch.Take(), Not(Contains(HasSubstr("rollback"))));
        EXPECT_EQ(kAllThree, Texts());
    }
}

TEST_F(StatusChanges, WriterThatStays) {
    RaiseThree();
    const auto lock = std::make_unique<CForeignLock>(path, CForeignLock::kWriter);
    const Captured printed = Walk();
    const std::string unread = Line("InsertSOE", "read record from zorsoe.db error!: database is locked\n");
    EXPECT_EQ(unread + unread + unread, printed.out);
    EXPECT_EQ("", printed.err);
    EXPECT_EQ(1000000, FakeClock::Slept());  // one wait per walk
}

TEST_F(StatusChanges, OpenThatFailsMidWalk) {
    RaiseThree();
    RunSql(path,
           "CREATE TRIGGER t BEFORE INSERT ON tagSOE WHEN new.point_no=103 AND "
           "(SELECT count(*) FROM tagSOE)=2 BEGIN SELECT RAISE(ROLLBACK, 'no room'); END");
    watch.FailOpens(1);
    EXPECT_EQ("Can't open database: automatic extension loading failed: refused\n" + InsertError("no room") +
                  InsertError("no room"),
              Walk().err);
    EXPECT_THAT(Texts(), ElementsAre("2[Fault]B 0 -> 1"));  // the lost one is not written again
}

}  // namespace
