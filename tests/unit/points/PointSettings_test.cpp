// From settings rows to the point lists and the real-time YC database.
#include "points/PointSettings.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "tests/support/TestRuntime.h"

namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

const std::string kPath = "/mnt/nandflash/app/zorpointsetting.db";
const std::string kOpened = "You have opened a sqlite3 database named zorpointsetting.db successfully!";
const std::string kFailed = "sqlite3_get_table Fail:\n";

class CPointSettings : public CStationTest {
  protected:
    // Loads both lists anew. What is printed for each goes to `yxOutput` and `ycOutput`.
    void Load(const PointRows& rows, int ports, const std::string& kind = "DC") {
        std::filesystem::remove(kPath);
        MakePoints(rows, kind);
        Load(ports);
    }
    void Load(int ports) {
        runtime.m_portCount = ports;
        runtime.m_yxPoints.clear();
        runtime.m_ycGroups.clear();
        yxOutput = Masked(Capture([this] { EXPECT_EQ(0, runtime.InitPointSettingYX()); }).out);
        ycOutput = Masked(Capture([this] { EXPECT_EQ(0, runtime.InitPointSettingYC()); }).out);
    }
    // "99@1 227@2": point numbers with their ports.
    std::string YxPoints() const {
        std::string text;
        for (const YxPointRecord& point : runtime.m_yxPoints)
            text += " " + std::to_string(point.pointNumber) + "@" + std::to_string(point.port);
        return text.empty() ? text : text.substr(1);
    }
    // "2/0: 1 2; ": groups by key and code, with their point numbers.
    std::string YcGroups() const {
        std::string text;
        for (const YcGroup& group : runtime.m_ycGroups) {
            text += std::to_string(group.key) + "/" + std::to_string(group.code) + ":";
            for (const YcPointRecord& point : group.points) text += " " + std::to_string(point.pointNumber);
            text += "; ";
        }
        return text;
    }

    std::string yxOutput;
    std::string ycOutput;
};
using PointSettings = CPointSettings;

template <typename... Numbers>
std::string Joined(const char* name, Numbers... numbers) {
    std::string text = name;
    ((text += "|" + testing::PrintToString(numbers)), ...);
    return text;
}

TEST_F(PointSettings, YxRowToRecord) {
    const std::string longName(200, 'n');
    const std::pair<std::string, std::string> cases[] = {
        {"7,'Door',5,120,'true',300,1", "Door|7|5|120|1|300|1"},
        {"'-7','Door','4',' 12x','false','+9','x'", "Door|-7|4|12|2|9|0"},
        {"NULL,NULL,NULL,NULL,NULL,NULL,NULL", "|0|0|0|0|0|0"},
        {"'99999999999','','-99999999999','2147483648','TRUE','4294967295',0",
         "|2147483647|-2147483648|2147483647|0|2147483647|0"},
        {"1,'" + longName + "',3,4,'true ',5,0", longName.substr(0, 127) + "|1|3|4|0|5|0"},
        {"1,'" + longName.substr(0, 127) + "',3,4,1,5,0", longName.substr(0, 127) + "|1|3|4|0|5|0"},
    };
    for (const auto& [row, expected] : cases) {
        Load({{row}, {}}, 1);
        ASSERT_EQ(1U, runtime.m_yxPoints.size()) << row;
        const YxPointRecord& r = runtime.m_yxPoints.front();
        EXPECT_EQ(expected, Joined(r.name, r.id, r.level, r.pointNumber, r.flag, r.address, r.source));
        EXPECT_EQ("0|0|0", Joined("0", int{r.previous}, int{r.current}));
        EXPECT_EQ(Line("InitPointSettingYX", kPath) + Line("InitPointSettingYX", kOpened), yxOutput);
    }
}

TEST_F(PointSettings, YxCopies) {
    const auto row = [](int point, int source) {
        return "1,'p',5," + std::to_string(point) + ",'true',9," + std::to_string(source);
    };
    const std::vector<std::string> rows = {row(98, 0), row(99, 0), row(3, 1), row(99, 2)};
    const std::pair<int, const char*> cases[] = {
        {1, "98@0 99@0 3@0 99@0"},
        {2, "98@1 99@1 227@2 3@1 131@2 99@1"},
        {3, "98@1 99@1 227@2 483@3 3@1 131@2 387@3 99@1"},
        {8,
         "98@1 99@1 227@2 483@3 867@4 1379@5 2019@6 2787@7 3683@8 "
         "3@1 131@2 387@3 771@4 1283@5 1923@6 2691@7 3587@8 99@1"},
    };
    for (const auto& [ports, expected] : cases) {
        Load({rows, {}}, ports);
        EXPECT_EQ(expected, YxPoints()) << ports;
        for (const YxPointRecord& point : runtime.m_yxPoints)
            EXPECT_EQ("p|9|1", Joined(point.name, point.address, point.flag));
    }
}

TEST_F(PointSettings, YcRowToRecord) {
    const std::string longName(60, 'n');
    struct Case {
        std::string row;
        const char* expected;
        int columns = 9;
    };
    const Case cases[] = {
        {"3,'Voltage',101,4,150,0.5,'7.9',1.25,'-2.5'", "Voltage|3|101|4|150|0.5|7|1.25|-2.5"},
        {"3,'Voltage',101,4,150,0.5,'-3.9',1.25", "Voltage|3|101|4|150|0.5|0|1.25|0", 8},
        {"NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL", "|0|0|0|0|0|0|0|0"},
        {"'-99999999999','x','99999999999','a',' -5','1e-3x','1e10','b',''",
         "x|-2147483648|2147483647|0|-5|0.001|4294967295|0|0"},
        {"1,'" + longName + "',1,0,0,1,'16777217',0,0",
         "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn|1|1|0|0|1|16777216|0|0"},
    };
    for (const Case& c : cases) {
        Load({{}, {c.row}, c.columns}, 1);
        ASSERT_EQ(1U, runtime.m_ycGroups.size()) << c.row;
        const YcPointRecord& r = runtime.m_ycGroups.front().points.front();
        EXPECT_EQ(c.expected, Joined(r.name, r.id, r.pointNumber, r.groupCode, r.groupBase, r.scale, r.offset,
                                     r.realC, r.realD));
        EXPECT_EQ(0U, r.previousRaw + r.currentRaw);
        EXPECT_EQ(Line("InitPointSettingYC", kPath) + Line("InitPointSettingYC", kOpened) +
                      Line("InitPointSettingYC", "Add new Node"),
                  ycOutput);
    }
}

TEST_F(PointSettings, YcGroupsAndCopies) {
    struct Row {
        int point;
        int code;
        int base;
    };
    struct Case {
        std::vector<Row> rows;
        int ports;
        const char* groups;
    };
    const Case cases[] = {
        {{{1, 0, 100}, {2, 0, 149}, {3, 0, 150}}, 2, "2/0: 1 2; 3/0: 3; "},
        {{{1, 0, 49}, {2, 0, -49}, {3, 0, -50}}, 2, "0/0: 1 2; -1/0: 3; "},
        {{{120, 0, 0}, {121, 0, 0}}, 2, "0/0: 120 121 249; "},
        {{{1, 0, 0}, {99, 0, 0}, {100, 0, 0}}, 3, "0/0: 1 99 100 228 484; "},
        {{{1, 0, 0}, {100, 0, 0}}, 1, "0/0: 1 100; "},
        {{{1, 0, 0}, {100, 0, 0}}, 8, "0/0: 1 100 228 484 868 1380 2020 2788 3684; "},
        // A code decides alone, whatever the key; a group without one takes every code of its key.
        {{{1, 5, 100}, {2, 0, 100}, {3, 5, 900}, {4, 7, 100}, {5, 6, 300}},
         1,
         "2/5: 1 3; 2/0: 2 4; 6/6: 5; "},
        {{{1, 0, 100}, {2, 5, 100}, {3, 5, 200}, {4, 5, 100}}, 1, "2/0: 1 2 4; 4/5: 3; "},
        {{}, 2, ""},
    };
    for (const Case& c : cases) {
        PointRows rows;
        for (const Row& row : c.rows)
            rows.yc.push_back("1,'u'," + std::to_string(row.point) + "," + std::to_string(row.code) + "," +
                              std::to_string(row.base) + ",1,0,0,0");
        Load(rows, c.ports);
        EXPECT_EQ(c.groups, YcGroups());
    }
}

TEST_F(PointSettings, TablesByKind) {
    Load({{"1,'dc',5,1,'true',9,0"}, {"1,'dc',1,0,0,1,0,0,0"}}, 1);
    MakePoints({{"1,'ac',5,2,'true',9,0"}, {"1,'ac',2,0,0,1,0,0,0"}}, "AC");
    for (const auto& [kind, point] : {std::pair{kDcCharger, 1}, {0, 1}, {3, 1}, {kAcCharger, 2}}) {
        runtime.SetChargerKind(kind);
        Load(1);
        EXPECT_EQ(std::to_string(point) + "@0", YxPoints()) << kind;
        EXPECT_EQ("0/0: " + std::to_string(point) + "; ", YcGroups()) << kind;
    }
}

TEST_F(PointSettings, UnreadableAddsNothing) {
    for (const char* content : {"", "no database at all, but long enough to be looked at twice"}) {
        WriteText(kPath, content);
        Load(2);
        EXPECT_EQ(Line("InitPointSettingYX", kPath) + Line("InitPointSettingYX", kOpened) +
                      Line("InitPointSettingYX", kFailed),
                  yxOutput);
        EXPECT_EQ(Line("InitPointSettingYC", kPath) + Line("InitPointSettingYC", kOpened) +
                      Line("InitPointSettingYC", kFailed),
                  ycOutput);
        EXPECT_EQ("", YxPoints() + YcGroups());
    }
}

TEST_F(PointSettings, NotOpenedEndsTheProcess) {
    std::filesystem::remove_all(kAppDirectory);
    const std::string text = "^Can't open database: unable to open database file\n$";
    EXPECT_EXIT(runtime.InitPointSettingYX(), ExitedWithCode(0), text);
    EXPECT_EXIT(runtime.InitPointSettingYC(), ExitedWithCode(0), text);
    EXPECT_EXIT(runtime.LoadRealTimeYc(), ExitedWithCode(0), text);
}

TEST_F(PointSettings, RealTimeDatabase) {
    const auto lines = [](const std::string& kind) {
        return kPath + "\n" + Line("Load", kOpened) + Line("Load", "database:" + kind) +
               Line("Load", "init YC realdatabase scussessful!");
    };
    MakePoints({{}, {"3,'Voltage'", "'x','Current'", "'99999999999',NULL"}, 2});
    EXPECT_EQ(lines("DC"), Masked(Capture([this] { EXPECT_EQ(0, runtime.LoadRealTimeYc()); }).out));
    std::vector<std::string> sets;
    for (const auto& set : runtime.m_rtdb.LabelSets())
        sets.push_back(Joined(set->Description().c_str(), set->PointNumber(), set->ValueCount()));
    EXPECT_THAT(sets, ElementsAre("Voltage|3|0", "Current|0|0", "|2147483647|0"));

    CRTDB ac;  // its table is missing
    EXPECT_EQ(lines("AC"), Masked(Capture([&] { EXPECT_EQ(0, ac.Load("", kAcCharger)); }).out));
    EXPECT_TRUE(ac.LabelSets().empty());
}

}  // namespace
