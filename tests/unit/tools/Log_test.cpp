// zorctl log beside a process that writes.
#include <filesystem>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

const std::string kEvents = AppFile(kEventFile);

using ZorctlLog = CEmptyStationTest;

TEST_F(ZorctlLog, ReadsOnly) {
    RunSql(kEvents, kCreateSoe + std::string(";INSERT INTO tagSOE VALUES(1,'a',0,0,0,'')"));
    const std::string before = Call("log soe --csv").out;
    // A writer with an open transaction neither hides the rows nor is held up by their reader.
    CSqliteDb writer;
    ASSERT_EQ(SQLITE_OK, writer.Open(kEvents.c_str(), 0));
    ASSERT_EQ(SQLITE_OK, writer.Exec("begin immediate transaction"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("INSERT INTO tagSOE VALUES(3,'',0,0,0,'')"));
    EXPECT_EQ(before, Call("log soe --csv").out);
    EXPECT_EQ(SQLITE_OK, writer.Exec("commit transaction")) << writer.Error();
    EXPECT_EQ(before + "3,,0,0,0,\n", Call("log soe --csv").out);
    // Half a change, copied from under its writer, is what the writer's sudden death leaves.
    ASSERT_EQ(SQLITE_OK, writer.Exec("pragma cache_size = 1"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("begin immediate transaction"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("UPDATE tagSOE SET event = hex(zeroblob(100000))"));
    std::filesystem::create_directory(AppFile("broken"));
    for (const char* end : {"", "-journal"})
        std::filesystem::copy(kEvents + end, AppFile("broken/") + kEventFile + end);
    writer.Close();
    EXPECT_EQ(
        "zorctl: /mnt/nandflash/app/broken/zorsoe.db: a write was broken off; readable again once "
        "zor_runtime has "
        "opened the file\n",
        Call("log soe /mnt/nandflash/app/broken").err);
}

}  // namespace
