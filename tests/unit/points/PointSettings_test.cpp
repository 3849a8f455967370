// Rows of the point settings as the points that the process works on.
#include <sstream>

#include "tests/support/TestRuntime.h"

namespace {

using PointSettings = CStationTest;

// The numbers (and ports) of all points, those of each group behind its key and code.
std::string Numbers(const CTestRuntime& runtime) {
    std::ostringstream text;
    for (const YxPointRecord& r : runtime.m_yxPoints) text << r.pointNumber << '/' << r.port << ' ';
    for (const YcGroup& group : runtime.m_ycGroups) {
        text << '[' << group.key << ',' << group.code << "] ";
        for (const YcPointRecord& r : group.points) text << r.pointNumber << ' ';
    }
    return text.str();
}

// Texts are cut to their fields, numbers saturate at 32 bits, NULL is 0; a table may lack its last column.
TEST_F(PointSettings, Rows) {
    const std::string n200(200, 'n');
    runtime.m_portCount = 1;
    Load({{"7,'Door',5,120,'true',300,1", "'-7','" + n200 + "','4',' 12x','false','+9','x'",
           "NULL,NULL,NULL,NULL,NULL,NULL,NULL"},
          {"3,'Volt',101,0,49,0.5,'7.9',1.25", "NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL",
           "1,'" + n200 + "',1,0,' -5','1e-3x','1e10','b'"},
          8});
    std::ostringstream points;
    const auto print = [&](const auto&... cells) { ((points << cells << ' '), ...) << '\n'; };
    for (const YxPointRecord& r : runtime.m_yxPoints)
        print(r.name, r.id, r.level, r.pointNumber, r.flag, r.address, r.source);
    for (const YcPointRecord& r : runtime.m_ycGroups.front().points)
        print(r.name, r.id, r.pointNumber, r.groupBase, r.scale, r.offset, r.realC, r.realD);
    EXPECT_EQ("Door 7 5 120 1 300 1 \n" + n200.substr(0, 127) + " -7 4 12 2 9 0 \n 0 0 0 0 0 0 \n" +
                  "Volt 3 101 49 0.5 7 1.25 0 \n 0 0 0 0 0 0 0 \n" + n200.substr(0, 39) +
                  " 1 1 -5 0.001 4294967295 0 0 \n",
              points.str());
}

// Ports; "number,source" of status points; "number,code,base" of telemetry points. The first of a group is
// not copied. 50 bases share a key, cut toward zero; a code decides alone, a group without one goes by its
// key.
TEST_F(PointSettings, CopiesAndGroups) {
    for (const auto& row : Table(R"(
2 | 98,0 99,0 3,1 99,2 | 120,0,0 100,0,0 99,0,0 | 98/1 99/1 227/2 3/1 131/2 99/1 [0,0] 120 100 228 99
8 | 99,0 | 1,0,0 100,0,0 | 99/1 227/2 483/3 867/4 1379/5 2019/6 2787/7 3683/8 [0,0] 1 100 228 484 868 1380 2020 2788 3684
1 | | 1,0,100 2,0,149 3,0,150 4,0,-49 5,0,-50 | [2,0] 1 2 [3,0] 3 [0,0] 4 [-1,0] 5
1 | | 1,0,100 6,5,200 7,5,900 8,7,100 9,6,200 | [2,0] 1 8 [4,5] 6 7 [4,6] 9)")) {
        PointRows rows;
        std::istringstream yx(row[1]);
        for (std::string point; yx >> point;)
            rows.yx.push_back("1,'p',5," + point.insert(point.find(','), ",0,9"));
        std::istringstream yc(row[2]);
        for (std::string point; yc >> point;) rows.yc.push_back("1,'p'," + point + ",1,0,0,0");
        runtime.m_portCount = std::stoi(row[0]);
        Load(rows);
        EXPECT_EQ(row[3] + ' ', Numbers(runtime));
    }
}

// The tables of an AC charger have their own names; any other kind reads those of a DC charger.
TEST_F(PointSettings, TablesOfTheKind) {
    for (const int kind : {kDcCharger, 0, kAcCharger})
        for (const std::string tables : {"DC", "AC"}) {
            runtime.SetChargerKind(kind);
            Load({{"1,'p',5,1,'true',9,0"}, {"4,'p',1,0,0,1,0,0,0"}}, tables);
            EXPECT_EQ((tables == "AC") == (kind == kAcCharger) ? "1/1 [0,0] 1 " : "", Numbers(runtime))
                << kind;
        }
    runtime.SetChargerKind(kDcCharger);
    EXPECT_THAT(Printed([this] { runtime.InitPointSettingYX(); }),
                testing::HasSubstr("sqlite3_get_table Fail:"));
}

}  // namespace
