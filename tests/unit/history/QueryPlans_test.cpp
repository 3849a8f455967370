// No statement of the loop or of the start-up may read or sort the history table: it grows for years.
#include <gmock/gmock.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "history/HistoryDatabase.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

namespace {

using QueryPlans = CStationTest;

TEST_F(QueryPlans, NothingReadsOrSortsTheTable) {
    const std::string path = AppFile(kHistoryFile);
    RunSql(path, kCreateYc);  // an old file gets its indexes
    for (int i = 9; i > 0; --i)
        RunSql(path, "INSERT INTO tagYC(portNo,sendcount,timestamp) VALUES(" + std::to_string(i % 3) + "," +
                         std::to_string(i % 5 + 1) + ",'2024-03-0" + std::to_string(i) + " 00:00:03')");
    CSqlWatch watch;
    runtime.m_datacache = 9;
    runtime.m_sendflag = 1;
    Printed([this] {
        EXPECT_EQ(0, runtime.CheckYCDB());
        runtime.InsertYC(1, 1);
        runtime.Checkcache();
        runtime.History_A1_16();
    });
    // Pending rows come by id, as they would without any index: the first eight are those that wait longest.
    const std::vector<std::string> sent = Take();
    ASSERT_EQ(8U, sent.size());
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ("03 00 00 0" + std::to_string(9 - i), sent[i].substr(6 + 9 * 3, 11));
    for (const char* command : {"08 00 85 2c 01 04 03 24 20 0a", "08 00 85 2c 01 04 03 24 20 18",
                                "08 00 85 2c 01 05 03 24 20 18", "0b 00 85 2f 01 03 00 00 04 03 24 20 00"}) {
        SendFrame(Hex(command));
        Printed([this] { runtime.MsgRcvFromMain(); });
    }
    int judged = 0;
    for (const std::string& sql : watch.Take()) {
        // One row, the first of the table, costs the same in any file.
        if (std::string("sSU").find(sql[0]) == std::string::npos || sql == "select * from tagYC limit 1")
            continue;
        for (const std::string& plan : QueryRows(path, "EXPLAIN QUERY PLAN " + sql)) {
            // The pending rows by id: this index holds no others.
            const bool pending = plan.find("USING INDEX tagYC_pending") != std::string::npos;
            EXPECT_TRUE(pending || plan.find("SCAN") == std::string::npos) << sql << "\n" << plan;
            EXPECT_EQ(std::string::npos, plan.find("TEMP B-TREE")) << sql << "\n" << plan;
            ++judged;
        }
    }
    EXPECT_LE(11, judged);
}

}  // namespace
