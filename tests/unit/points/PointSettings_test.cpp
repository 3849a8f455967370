// Rows of the point settings as the points that the process works on.
#include <sstream>

#include "tests/support/TestRuntime.h"

namespace {

class CPointSettings : public CStationTest {
  protected:
    // A line per status point: name, id, level, number, flag, address, source, port; per group: key, code;
    // per telemetry point: name, id, number, code, base, scale, offset, c, d.
    std::string Points() const {
        std::ostringstream text;
        for (const YxPointRecord& r : runtime.m_yxPoints)
            text << r.name << '|' << r.id << '|' << r.level << '|' << r.pointNumber << '|' << r.flag << '|'
                 << r.address << '|' << r.source << '|' << r.port << '\n';
        for (const YcGroup& group : runtime.m_ycGroups) {
            text << "group|" << group.key << '|' << group.code << '\n';
            for (const YcPointRecord& r : group.points)
                text << r.name << '|' << r.id << '|' << r.pointNumber << '|' << r.groupCode << '|'
                     << r.groupBase << '|' << r.scale << '|' << r.offset << '|' << r.realC << '|' << r.realD
                     << '\n';
        }
        return text.str();
    }
    // The numbers of all points, those of each group behind its key and code.
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
          {"3,'Voltage',101,4,150,0.5,'7.9',1.25,'-2.5'", "NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL",
           "1,'x',1,0,' -5','1e-3x','1e10','b',''", "1,'" + n200 + "',1,0,0,1,'16777217',0,0",
           "1,'x',1,0,0,1,'-3.9',0,0"}});
    EXPECT_EQ(
        "Door|7|5|120|1|300|1|0\nDoor|-7|4|12|2|9|0|0\n|0|0|0|0|0|0|0\n"
        "|2147483647|-2147483648|0|0|2147483647|0|0\n" +
            n200.substr(0, 127) +
            "|1|3|4|0|5|0|0\n"
            "group|3|4\nVoltage|3|101|4|150|0.5|7|1.25|-2.5\n"
            "group|0|0\n|0|0|0|0|0|0|0|0\nx|1|1|0|-5|0.001|4294967295|0|0\n" +
            n200.substr(0, 39) + "|1|1|0|0|1|16777216|0|0\nx|1|1|0|0|1|0|0|0\n",
        Points());
    Load({{}, {"3,'Voltage',101,4,150,0.5,7,1.25"}, 8});  // without the last column
    EXPECT_EQ("group|3|4\nVoltage|3|101|4|150|0.5|7|1.25|0\n", Points());
}

// Rows are "number, source" or, of telemetry, "number, code, base"; shown are the numbers of all points.
TEST_F(PointSettings, CopiesAndGroups) {
    const struct {
        int ports;
        std::vector<const char*> yx;
        std::vector<const char*> yc;
        const char* numbers;
    } kCases[] = {
        // Status points from 99 on, all of the second table, none of an unknown one.
        {2, {"98,0", "99,0", "3,1", "99,2"}, {}, "98/1 99/1 227/2 3/1 131/2 99/1 "},
        // Telemetry from 100 on, but not the point that opens a group.
        {2, {}, {"120,0,0", "100,0,0", "99,0,0"}, "[0,0] 120 100 228 99 "},
        {8,
         {"99,0", "3,1"},
         {"1,0,0", "100,0,0"},
         "99/1 227/2 483/3 867/4 1379/5 2019/6 2787/7 3683/8 3/1 131/2 387/3 771/4 1283/5 1923/6 2691/7 "
         "3587/8 "
         "[0,0] 1 100 228 484 868 1380 2020 2788 3684 "},
        // Bases 100 and 149 share a key, 150 does not; the division is toward zero.
        {1,
         {},
         {"1,0,100", "2,0,149", "3,0,150", "4,0,-49", "5,0,-50"},
         "[2,0] 1 2 [3,0] 3 [0,0] 4 [-1,0] 5 "},
        // A code decides alone, whatever the key; a group without one takes every code of its key.
        {1, {}, {"1,0,100", "6,5,200", "7,5,900", "8,7,100", "9,6,200"}, "[2,0] 1 8 [4,5] 6 7 [4,6] 9 "},
    };
    for (const auto& c : kCases) {
        PointRows rows;
        for (const std::string row : c.yx) {
            const std::size_t comma = row.find(',');
            rows.yx.push_back("1,'p',5," + row.substr(0, comma) + ",0,9" + row.substr(comma));
        }
        for (const char* row : c.yc) rows.yc.push_back("1,'p'," + std::string(row) + ",1,0,0,0");
        runtime.m_portCount = c.ports;
        Load(rows);
        EXPECT_EQ(c.numbers, Numbers());
    }
}

// The tables of an AC charger have their own names; any other kind reads those of a DC charger.
TEST_F(PointSettings, TablesOfTheKind) {
    const PointRows kRows{{"1,'p',5,1,'true',9,0"}, {"4,'p',1,0,0,1,0,0,0", "'x',NULL,2,0,300,1,0,0,0"}};
    const std::string kPath = AppFile(kPointSettingFile);
    const std::string kOpened = "You have opened a sqlite3 database named zorpointsetting.db successfully!\n";
    for (const auto& [kind, tables, fits] : {std::tuple{kDcCharger, "DC", true},
                                             {0, "DC", true},
                                             {kAcCharger, "AC", true},
                                             {kAcCharger, "DC", false},
                                             {kDcCharger, "AC", false},
                                             {0, "AC", false}}) {
        runtime.SetChargerKind(kind);
        Load(kRows, tables);
        EXPECT_EQ(fits ? "1/1 [0,0] 1 [6,0] 2 " : "", Numbers()) << kind << tables;
        const std::string trouble = ": sqlite3_get_table Fail:\\n\n";
        EXPECT_EQ("InitPointSettingYX: " + kPath + "\nInitPointSettingYX: " + kOpened +
                      (fits ? "" : "InitPointSettingYX" + trouble),
                  Said([this] { runtime.InitPointSettingYX(); }));
        runtime.m_ycGroups.clear();
        EXPECT_EQ("InitPointSettingYC: " + kPath + "\nInitPointSettingYC: " + kOpened +
                      (fits ? "InitPointSettingYC: Add new Node\nInitPointSettingYC: Add new Node\n"
                            : "InitPointSettingYC" + trouble),
                  Said([this] { runtime.InitPointSettingYC(); }));
        CRTDB database;
        EXPECT_EQ(kPath + "\nLoad: " + kOpened + "Load: database:" + (kind == kAcCharger ? "AC" : "DC") +
                      "\nLoad: init YC realdatabase scussessful!\n",
                  Said([&, kind = kind] { EXPECT_EQ(0, database.Load("", kind)); }));
        std::string sets;
        for (const auto& set : database.LabelSets())
            sets += set->Description() + '|' + std::to_string(set->PointNumber()) + '|' +
                    std::to_string(set->ValueCount()) + ' ';
        EXPECT_EQ(fits ? "p|4|0 |0|0 " : "", sets);
    }
}

}  // namespace
