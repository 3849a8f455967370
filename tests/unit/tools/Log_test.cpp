// zorctl log: rows of the station's databases in each form.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "System/AppFiles.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

const std::string kEvents = AppFile(kEventFile);

class ZorctlLog : public CEmptyStationTest {
  protected:
    // Rows with the given ids, an hour apart from 2024-03-05 00:00.
    void MakeEvents(int first, int last) {
        RunSql(kEvents, kCreateSoe);
        RunSql(kEvents, "WITH RECURSIVE n(i) AS (SELECT " + std::to_string(first) +
                            " UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(last) +
                            ") INSERT INTO tagSOE SELECT i, 'event ' || i, i % 2, 134, 0, "
                            "datetime('2024-03-05', '+' || (i - 1) || ' hours') FROM n");
    }
    std::string IdsOf(const std::string& options) {
        const Outcome outcome = Call("log soe --csv " + options);
        EXPECT_EQ(0, outcome.exit) << outcome.err;
        std::istringstream lines(outcome.out);
        std::string ids;
        std::string line;
        for (std::getline(lines, line); std::getline(lines, line);)
            ids += (ids.empty() ? "" : " ") + line.substr(0, line.find(','));
        return ids;
    }
};

TEST_F(ZorctlLog, Forms) {
    RunSql(kEvents, kCreateSoe);
    EXPECT_EQ("id  timestamp  yx_table  point_no  value  event\n", Call("log soe").out);
    EXPECT_EQ("id,event,value,point_no,yx_table,timestamp\n", Call("log soe --csv").out);
    EXPECT_EQ("", Call("log soe --json").out);
    RunSql(kEvents,
           "INSERT INTO tagSOE VALUES(9,'[Fault]T\xC3\xBCr, \"left\" 0 -> 1',1,262,0,'2024-03-05 09:45:00');"
           "INSERT INTO tagSOE VALUES(10,CAST(x'1b5bff' AS TEXT),'007',-5,NULL,'2024-03-05 09:45:01')");
    EXPECT_EQ(
        "id  timestamp            yx_table  point_no  value  event\n"
        " 9  2024-03-05 09:45:00         0       262      1  [Fault]T\xC3\xBCr, \"left\" 0 -> 1\n"
        "10  2024-03-05 09:45:01                  -5      7  \\x1b[\xEF\xBF\xBD\n",
        Call("log soe /mnt/nandflash/app").out);
    EXPECT_EQ(
        "id,event,value,point_no,yx_table,timestamp\n"
        "9,\"[Fault]T\xC3\xBCr, \"\"left\"\" 0 -> 1\",1,262,0,2024-03-05 09:45:00\n"
        "10,\x1b[\xFF,7,-5,,2024-03-05 09:45:01\n",
        Call("log soe --csv").out);
    EXPECT_EQ(
        "{\"id\":9,\"event\":\"[Fault]T\xC3\xBCr, \\\"left\\\" 0 -> 1\",\"value\":1,\"point_no\":262,"
        "\"yx_table\":0,\"timestamp\":\"2024-03-05 09:45:00\"}\n"
        "{\"id\":10,\"event\":\"\\u001b[\xEF\xBF\xBD\",\"value\":7,\"point_no\":-5,\"yx_table\":null,"
        "\"timestamp\":\"2024-03-05 09:45:01\"}\n",
        Call("log soe --json").out);
}

TEST_F(ZorctlLog, OtherTables) {
    RunSql(kEvents,
           kCreateErrMsg + std::string(";INSERT INTO tagErrMsg VALUES(1,'Soc:5','2024-03-05 09:45:00')"));
    EXPECT_EQ("id  timestamp            event\n 1  2024-03-05 09:45:00  Soc:5\n", Call("log errors").out);
    RunSql(AppFile(kHistoryFile),
           kCreateYc +
               std::string(";INSERT INTO tagYC(portNo,sendcount,mvalue,fvalue,tradenumber,tradeelec,"
                           "timestamp,dcK1Cnt,dcK2Cnt) VALUES(2,1,'9223372036854775807','012','00112233',"
                           "'-7','2024-03-05 00:00:00','3','4')"));
    EXPECT_EQ(
        "id  timestamp            portNo  sendcount               mvalue  fvalue  tradeelec  tradenumber  "
        "dcK1Cnt  "
        "dcK2Cnt\n"
        " 1  2024-03-05 00:00:00       2          1  9223372036854775807     012         -7  00112233        "
        "   3  "
        "      4\n",
        Call("log history").out);
    const std::string json = Call("log history --json").out;
    EXPECT_THAT(json, testing::HasSubstr("\"mvalue\":9223372036854775807,\"mvalue_1\":null,"));
    EXPECT_THAT(json, testing::HasSubstr("\"fvalue\":\"012\","));  // as a number it would be no JSON
    EXPECT_THAT(json, testing::HasSubstr("\"tradenumber\":\"00112233\",\"tradeelec\":-7,"));
}

TEST_F(ZorctlLog, RowsThatAreAskedFor) {
    MakeEvents(3, 1210);  // more than two pages
    const struct {
        const char* options;
        const char* ids;
    } kCases[] = {
        {"--last 1", "1210"},
        {"--last 3", "1208 1209 1210"},
        {"--since 2024-04-24", "1201 1202 1203 1204 1205 1206 1207 1208 1209 1210"},
        {"--since \"2024-04-24 08:00\"", "1209 1210"},
        {"--since 2024-04-24T08:00:01 --last 7", "1210"},
        {"--since 2024-04-24 --last 2", "1209 1210"},
        {"--since 2024-04-25", ""},
    };
    for (const auto& item : kCases) EXPECT_EQ(item.ids, IdsOf(item.options)) << item.options;
    const std::string all = IdsOf("");
    EXPECT_EQ(1208, std::count(all.begin(), all.end(), ' ') + 1);

    // The tests' clock stands at 2024-03-05 09:45.
    RunSql(kEvents, "DELETE FROM tagSOE WHERE id > 11");
    EXPECT_EQ("11", IdsOf("--since 0s"));
    EXPECT_EQ("10 11", IdsOf("--since 45m"));
    EXPECT_EQ("10 11", IdsOf("--since 6299s"));
    EXPECT_EQ("9 10 11", IdsOf("--since 6300s"));
    EXPECT_EQ("3 4 5 6 7 8 9 10 11", IdsOf("--since 9999d"));
    // A clock that was set back does not hide what is older by its id.
    RunSql(kEvents, "UPDATE tagSOE SET timestamp = '2024-03-01' WHERE id = 10");
    EXPECT_EQ("9 11", IdsOf("--since 6300s"));
    for (const char* since : {"yesterday", "2024-03", "2024-03-05 9:45", "10", "10w", "10000d", "m"})
        EXPECT_EQ(2, Call(std::string("log soe --since \"") + since + '"').exit) << since;
}

TEST_F(ZorctlLog, ReadsOnly) {
    EXPECT_EQ("zorctl: /mnt/nandflash/app/zorsoe.db: not there\n", Call("log soe").err);
    EXPECT_NE(0, access(kEvents.c_str(), F_OK));
    MakeEvents(1, 2);
    EXPECT_EQ("zorctl: zorsoe.db: no table tagErrMsg\n", Call("log errors").err);
    // A writer with an open transaction neither hides the rows nor is held up by their reader.
    CSqliteDb writer;
    ASSERT_EQ(SQLITE_OK, writer.Open(kEvents.c_str(), 0));
    ASSERT_EQ(SQLITE_OK, writer.Exec("begin immediate transaction"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("INSERT INTO tagSOE VALUES(3,'',0,0,0,'')"));
    EXPECT_EQ("1 2", IdsOf(""));
    EXPECT_EQ(SQLITE_OK, writer.Exec("commit transaction")) << writer.Error();
    EXPECT_EQ("1 2 3", IdsOf(""));
    // Half a change, copied from under its writer, is what the writer's sudden death leaves.
    ASSERT_EQ(SQLITE_OK, writer.Exec("pragma cache_size = 1"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("begin immediate transaction"));
    ASSERT_EQ(SQLITE_OK, writer.Exec("UPDATE tagSOE SET event = hex(zeroblob(100000))"));
    std::filesystem::create_directory(AppFile("broken"));
    for (const char* end : {"", "-journal"})
        std::filesystem::copy(kEvents + end, AppFile("broken/") + kEventFile + end);
    writer.Close();
    EXPECT_EQ(
        "zorctl: zorsoe.db: a write was broken off; readable again once zor_runtime has opened the file\n",
        Call("log soe /mnt/nandflash/app/broken").err);
    WriteText(kEvents, "no database at all, and longer than a header would be, so that it is read as one");
    const Outcome broken = Call("log soe");
    EXPECT_EQ(1, broken.exit);
    EXPECT_THAT(broken.err, testing::HasSubstr("zorsoe.db: file is "));
}

}  // namespace
