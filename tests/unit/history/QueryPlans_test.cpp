// No statement of the loop or of the start-up may read or sort the whole table: it grows for years.
#include <algorithm>

#include "history/HistoryDatabase.h"
#include "tests/support/SqlWatch.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

class CQueryPlans : public CHistoryTest {
  protected:
    // Everything that the process ever does with the history database.
    void UseTheFile() {
        YcHistoryRecord records[24] = {};
        int count = 24;
        runtime.CheckYCDB();
        runtime.InsertYC(0, 1);
        runtime.Checkcache();
        runtime.ReadDBSingleYCdata("2024-03-04", 1, 10, records, count = 24);
        runtime.ReadDBSingleYCdata("2024-03-04", 1, kWholeDay, records, count = 24);
        runtime.ReadDBSingleYCdata("2024-03-05", 1, kWholeDay, records, count = 24);
        runtime.ReadCacheYCdata(records, count = 8);
        runtime.DeletCacheData("2024-03-04 00:", 1);
    }
};
using QueryPlans = CQueryPlans;

TEST_F(QueryPlans, NothingReadsOrSortsTheTable) {
    AddRow(1, "2024-03-04 00:00:03", 1);
    AddRow(2, "2024-03-04 00:00:03", 1);
    CSqlWatch watch;
    Capture([this] { UseTheFile(); });
    int judged = 0;
    for (const std::string& sql : watch.Take()) {
        const bool query =
            sql.rfind("select", 0) == 0 || sql.rfind("SELECT", 0) == 0 || sql.rfind("UPDATE", 0) == 0;
        // One row, the first of the table, costs the same in any file.
        if (!query || sql == "select * from tagYC limit 1") continue;
        for (const std::string& plan : QueryRows(Path(), "EXPLAIN QUERY PLAN " + sql)) {
            // The pending rows by id: this index holds no others.
            const bool pending = plan.find("USING INDEX tagYC_pending") != std::string::npos;
            EXPECT_TRUE(pending || plan.find("SCAN") == std::string::npos) << sql << "\n" << plan;
            EXPECT_EQ(std::string::npos, plan.find("TEMP B-TREE")) << sql << "\n" << plan;
            ++judged;
        }
    }
    EXPECT_LE(11, judged);
}

TEST_F(QueryPlans, AnOldFileGetsItsIndexesOnceAndKeepsItsRows) {
    std::filesystem::remove(Path());
    RunSql(Path(), kCreateYc);
    AddRow(1, "2024-03-04 00:00:03", 1);
    const std::string indexes = "SELECT count(*) FROM sqlite_master WHERE type='index'";
    for (int start = 0; start < 2; ++start) {
        Capture([this] { EXPECT_EQ(0, runtime.CheckYCDB()); });
        EXPECT_THAT(QueryRows(Path(), indexes), testing::ElementsAre("4"));
    }
    EXPECT_THAT(Rows("timestamp"), testing::ElementsAre("2024-03-04 00:00:03"));
}

// Pending rows come by id, as they would without any index: the first eight are those that wait longest.
TEST_F(QueryPlans, PendingRowsComeById) {
    for (int i = 9; i > 0; --i) AddRow(i % 3 + 1, "2024-03-0" + std::to_string(i) + " 00:00:03", i % 5 + 1);
    YcHistoryRecord records[8] = {};
    int count = 8;
    Capture([&] { runtime.ReadCacheYCdata(records, count); });
    ASSERT_EQ(8, count);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ("2024-03-0" + std::to_string(9 - i) + " 00:00:03", std::string(records[i].collecttime));
}

}  // namespace
