// Rows of the point settings as the points that the process works on.
#include <sstream>

#include "tests/support/TestRuntime.h"

namespace {

class CPointSettings : public CStationTest {
  protected:
    // Status points: name, id, level, number, flag, address, source, port. A group: key, code. Its points:
    // name, id, number, code, base, scale, offset, c, d.
    std::string Points() const {
        std::ostringstream text;
        for (const YxPointRecord& r : runtime.m_yxPoints)
            text << r.name << ' ' << r.id << ' ' << r.level << ' ' << r.pointNumber << ' ' << r.flag << ' '
                 << r.address << ' ' << r.source << ' ' << r.port << '\n';
        for (const YcGroup& group : runtime.m_ycGroups) {
            text << "group " << group.key << ' ' << group.code << '\n';
            for (const YcPointRecord& r : group.points)
                text << r.name << ' ' << r.id << ' ' << r.pointNumber << ' ' << r.groupCode << ' '
                     << r.groupBase << ' ' << r.scale << ' ' << r.offset << ' ' << r.realC << ' ' << r.realD
                     << '\n';
        }
        return text.str();
    }
    // The numbers (and ports) of all points, those of each group behind its key and code.
    std::string Numbers() const {
        std::ostringstream text;
        for (const YxPointRecord& r : runtime.m_yxPoints) text << r.pointNumber << '/' << r.port << ' ';
        for (const YcGroup& group : runtime.m_ycGroups) {
            text << '[' << group.key << ',' << group.code << "] ";
            for (const YcPointRecord& r : group.points) text << r.pointNumber << ' ';
        }
        return text.str();
    }
};
using PointSettings = CPointSettings;

// Texts are cut to their fields, numbers saturate at 32 bits, NULL is 0.
TEST_F(PointSettings, Rows) {
    const std::string n200(200, 'n');
    runtime.m_portCount = 1;
    Load({{"7,'Door',5,120,'true',300,1", "'-7','Door','4',' 12x','false','+9','x'",
           "NULL,NULL,NULL,NULL,NULL,NULL,NULL", "'99999999999','','-99999999999',0,'TRUE','4294967295',0",
           "1,'" + n200 + "',3,4,'true ',5,0"},
          {"3,'Volt',101,4,150,0.5,'7.9',1.25,'-2.5'", "NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL",
           "1,'x',1,0,' -5','1e-3x','1e10','b',''", "1,'" + n200 + "',1,0,0,1,'16777217',0,0",
           "1,'x',1,0,0,1,'-3.9',0,0"}});
    EXPECT_EQ(
        "Door 7 5 120 1 300 1 0\nDoor -7 4 12 2 9 0 0\n 0 0 0 0 0 0 0\n 2147483647 -2147483648 0 0 "
        "2147483647 0 0\n" +
            n200.substr(0, 127) + " 1 3 4 0 5 0 0\ngroup 3 4\nVolt 3 101 4 150 0.5 7 1.25 -2.5\n" +
            "group 0 0\n 0 0 0 0 0 0 0 0\nx 1 1 0 -5 0.001 4294967295 0 0\n" + n200.substr(0, 39) +
            " 1 1 0 0 1 16777216 0 0\nx 1 1 0 0 1 0 0 0\n",
        Points());
    Load({{}, {"3,'Volt',101,4,150,0.5,7,1.25"}, 8});  // without the last column
    EXPECT_EQ("group 3 4\nVolt 3 101 4 150 0.5 7 1.25 0\n", Points());
}

// Ports; "number,source" of status points; "number,code,base" of telemetry points. Copied are status points
// from 99 on, all of the second table and none of an unknown one, telemetry points from 100 on, but not the
// one that opens a group. Bases 100 and 149 share a key, 150 does not; the division is toward zero. A code
// decides alone, whatever the key; a group without one takes every code of its key.
TEST_F(PointSettings, CopiesAndGroups) {
    for (const auto& row : Table(R"(
2 | 98,0 99,0 3,1 99,2 |                                      | 98/1 99/1 227/2 3/1 131/2 99/1
2 |                    | 120,0,0 100,0,0 99,0,0               | [0,0] 120 100 228 99
8 | 99,0               |                                      | 99/1 227/2 483/3 867/4 1379/5 2019/6 2787/7 3683/8
8 | 3,1                |                                      | 3/1 131/2 387/3 771/4 1283/5 1923/6 2691/7 3587/8
8 |                    | 1,0,0 100,0,0                        | [0,0] 1 100 228 484 868 1380 2020 2788 3684
1 |                    | 1,0,100 2,0,149 3,0,150 4,0,-49 5,0,-50 | [2,0] 1 2 [3,0] 3 [0,0] 4 [-1,0] 5
1 |                    | 1,0,100 6,5,200 7,5,900 8,7,100 9,6,200 | [2,0] 1 8 [4,5] 6 7 [4,6] 9)")) {
        PointRows rows;
        std::istringstream yx(row[1]);
        for (std::string point; yx >> point;)
            rows.yx.push_back("1,'p',5," + point.insert(point.find(','), ",0,9"));
        std::istringstream yc(row[2]);
        for (std::string point; yc >> point;) rows.yc.push_back("1,'p'," + point + ",1,0,0,0");
        runtime.m_portCount = std::stoi(row[0]);
        Load(rows);
        EXPECT_EQ(row[3] + ' ', Numbers());
    }
}

// The tables of an AC charger have their own names; any other kind reads those of a DC charger.
TEST_F(PointSettings, TablesOfTheKind) {
    const std::string kOpened = "You have opened a sqlite3 database named zorpointsetting.db successfully!;";
    const std::string kBoth = AppFile(kPointSettingFile) + ';' + kOpened;
    for (const std::string tables : {"DC", "AC"})
        for (const int kind : {kDcCharger, 0, kAcCharger}) {
            runtime.SetChargerKind(kind);
            Load({{"1,'p',5,1,'true',9,0"}, {"4,'p',1,0,0,1,0,0,0", "'x',NULL,2,0,300,1,0,0,0"}}, tables);
            const bool fits = (tables == "AC") == (kind == kAcCharger);
            EXPECT_EQ(fits ? "1/1 [0,0] 1 [6,0] 2 " : "", Numbers()) << kind << tables;
            runtime.m_ycGroups.clear();
            CRTDB database;
            const std::string said = Printed([&] {
                runtime.InitPointSettingYX();
                runtime.InitPointSettingYC();
                database.Load("", kind);
            });
            EXPECT_EQ(kBoth + (fits ? "" : "sqlite3_get_table Fail:"),
                      Texts(said, "InitPointSettingYX") + (fits ? ";" : ""));
            EXPECT_EQ(kBoth + (fits ? "Add new Node;Add new Node" : "sqlite3_get_table Fail:"),
                      Texts(said, "InitPointSettingYC"));
            EXPECT_EQ(kOpened + "database:" + (kind == kAcCharger ? "AC" : "DC") +
                          ";init YC realdatabase scussessful!",
                      Texts(said, "Load"));
            std::string sets;
            for (const auto& set : database.LabelSets())
                sets += set->Description() + '/' + std::to_string(set->PointNumber()) + ' ';
            EXPECT_EQ(fits ? "p/4 /0 " : "", sets);
        }
}

}  // namespace
