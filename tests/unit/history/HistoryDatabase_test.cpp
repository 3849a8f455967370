// What the start-up makes of the history database that it finds.
#include "history/HistoryDatabase.h"

#include <filesystem>

#include "app/StartUp.h"
#include "tests/unit/history/HistoryTest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string kOpened = "You have opened zorycdata.db successfully!";
const std::string kChecked = Line("CheckYCDB", kOpened);
const std::string kKept = kChecked + Line("CheckYCDB", "tagYC is new, so keep it!");
const std::string kOld = Line("CheckYCDB", "tagYC is old, so remove it!");
const std::string kMade = Line("InitYcHistoryDatabase", kOpened);
const std::string kUnread = Line("CheckYCDB", "sqlite3_get_table Fail:\n");

class CHistoryDatabase : public CHistoryTest {
  protected:
    CHistoryDatabase() {
        std::filesystem::remove(Path());
        MakeConfig(2);
    }

    // What a start-up prints behind the path of the history database.
    std::string Start() {
        const std::string out = Printed([this] { StartUp(runtime); });
        return out.substr(out.find(Path() + "\n") + Path().size() + 1);
    }
};
using HistoryDatabase = CHistoryDatabase;

constexpr char kNoPortColumn[] = "no port column";
const std::string kNoIndexes =
    "zor_runtime: zorycdata.db stays slow without its indexes: no such column: portNo\n";

TEST_F(HistoryDatabase, WhatIsKeptAndWhatIsMadeAnew) {
    const std::string oldRow =
        "CREATE TABLE tagYC(id INTEGER PRIMARY KEY, portNo, x, y, chargecnt);"
        "INSERT INTO tagYC VALUES(1, 1, 2, 3, 4)";
    const struct {
        const char* what;
        std::function<void()> make;
        std::string printed;
        bool anew;
    } kCases[] = {
        {"missing", [] {}, "zorycdata.db is not exist!!!\n" + kMade, true},
        {"zero length", [] { WriteText(Path(), ""); },
         "zorycdata.db is broken, so remove zorycdata.db\n" + kMade, true},
        {"no database", [] { WriteText(Path(), std::string(4096, 'x')); }, kChecked + kUnread + kOld + kMade,
         true},
        {"no table", [] { RunSql(Path(), "CREATE TABLE other(a)"); }, kChecked + kUnread + kOld + kMade,
         true},
        {"no rows", [] { RunSql(Path(), kCreateYc); }, kChecked + kOld + kMade, true},
        {"no column of that very name", [&] { RunSql(Path(), oldRow); }, kChecked + kOld + kMade, true},
        {"rows",
         [] {
             RunSql(Path(), kCreateYc);
             AddRow(2, "2023-08-30 00:00:00");
         },
         kKept + Line("CheckYCDB", "tagYC get port: 1 no data!\n") +
             Line("CheckYCDB", "port:2 get k1Cnt:0 k2Cnt:0 from tagYC!\n"),
         false},
        {kNoPortColumn,
         [] { RunSql(Path(), "CREATE TABLE tagYC(a, chargeCnt);INSERT INTO tagYC VALUES(1, 2)"); },
         kKept + Line("CheckYCDB", "tagYC get port: 1 data error:no such column: portNo") +
             Line("CheckYCDB", "tagYC get port: 2 data error:no such column: portNo"),
         false},
        {"a folder", [] { std::filesystem::create_directories(Path()); }, "", false},
    };
    for (const auto& item : kCases) {
        std::filesystem::remove(Path());
        item.make();
        EXPECT_EQ(item.printed, Start()) << item.what;
        const bool folder = std::filesystem::is_directory(Path());
        EXPECT_EQ(folder ? "Can't open database: unable to open database file\n"
                  : item.what == std::string(kNoPortColumn) ? kNoIndexes
                                                            : "",
                  errors)
            << item.what;
        if (!item.anew) continue;
        EXPECT_THAT(QueryRows(Path(), "SELECT sql FROM sqlite_master WHERE type='table'"),
                    ElementsAre(kCreateYc))
            << item.what;
    }
    std::filesystem::remove(Path());
    RunSql(Path(), kCreateYc);
    EXPECT_EQ(kMade, Printed([this] { runtime.InitYcHistoryDatabase(); }));
    EXPECT_EQ("zorycdata.db create table tagYC error!: table tagYC already exists\n", errors);
}

TEST_F(HistoryDatabase, CountersComeFromTheEndOfTheNewestRow) {
    RunSql(Path(), kCreateYc);
    for (const char* row : {"5, 0, 1000, 2000", "6, 1, 100, 200", "3, 1, 7, 7", "1, 2, NULL, 2147483647"})
        RunSql(Path(), "INSERT INTO tagYC(id,portNo,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) VALUES(" +
                           std::string(row) + ",55,66)");
    const auto check = [this](int ports) {
        runtime.m_portCount = ports;
        runtime.k1Cnt = {10, 11, 12, 13};
        runtime.k2Cnt = {20, 21, 22, 23};
        return Printed([this] { EXPECT_EQ(0, runtime.CheckYCDB()); });
    };
    const auto line = [](const char* text) { return Line("CheckYCDB", text); };
    EXPECT_EQ(kKept, check(0));
    EXPECT_EQ(kKept + line("port:0 get k1Cnt:1010 k2Cnt:2020 from tagYC!\n"), check(1));
    EXPECT_THAT(runtime.k1Cnt, ElementsAre(1010, 11, 12, 13, 0, 0, 0, 0, 0));
    EXPECT_EQ(kKept + line("port:1 get k1Cnt:111 k2Cnt:221 from tagYC!\n") +
                  line("port:2 get k1Cnt:12 k2Cnt:-2147483627 from tagYC!\n") +
                  line("tagYC get port: 3 no data!\n"),
              check(3));
    EXPECT_THAT(runtime.k1Cnt, ElementsAre(10, 111, 12, 13, 0, 0, 0, 0, 0));
    EXPECT_THAT(runtime.k2Cnt, ElementsAre(20, 221, -2147483627, 23, 0, 0, 0, 0, 0));
    RunSql(Path(), "DELETE FROM tagYC WHERE portNo = 0");
    EXPECT_EQ(kKept + line("tagYC get port:0 no data!"), check(1));
}

TEST_F(HistoryDatabase, BusyIsNotOld) {
    RunSql(Path(), kCreateYc);
    AddRow(1, "2023-08-30 00:00:00");
    CSqliteDb other;
    other.Open(Path().c_str(), 0);
    other.Exec("BEGIN EXCLUSIVE");
    FakeClock::Set(FakeClock::kStart);
    EXPECT_EQ(kChecked + kUnread, Start());
    EXPECT_NEAR(FakeClock::kStart + 10, static_cast<double>(std::time(nullptr)), 1);
    other.Exec("COMMIT");
    EXPECT_THAT(Rows("portNo"), ElementsAre("1"));
    EXPECT_THAT(Start(), HasSubstr("keep it"));
}

}  // namespace
