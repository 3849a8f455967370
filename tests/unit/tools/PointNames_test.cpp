// zorctl set and get by the names of the point settings.
#include <sys/shm.h>

#include "System/AppFiles.h"
#include "points/PointSettings.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"

namespace {

class ZorctlNames : public CEmptyStationTest {
  protected:
    static void Make(int ports) {
        ASSERT_EQ(0, Call("init --force /mnt/nandflash/app --ports " + std::to_string(ports)).exit);
    }
    static void MakeFrom(const std::string& yx, const std::string& yc) {
        WriteText("/mnt/nandflash/yx.csv", "name,point,source\n" + yx);
        WriteText("/mnt/nandflash/yc.csv", "name,point\n" + yc);
        ASSERT_EQ(0, Call("init --force /mnt/nandflash/app --ports 2 --yx /mnt/nandflash/yx.csv --yc "
                          "/mnt/nandflash/yc.csv")
                         .exit);
    }
};

TEST_F(ZorctlNames, SetIsWhatGetPrints) {
    Make(4);
    const struct {
        const char* point;
        const char* value;
        const char* printed;
    } kCases[] = {
        {"\"Gun connected\"", "1", "yx 134 \"Gun connected\" state=1"},
        {"\"gun CONNECTED\" --port 2", "255", "yx 262 \"Gun connected\" state=255"},
        // The copy that the process watches for this port, not the one 256 above.
        {"\"Gun connected\" --port 3", "on", "yx 518 \"Gun connected\" state=1"},
        {"\"Gun connected\" --port 3", "OFF", "yx 518 \"Gun connected\" state=0"},
        {"\"Emergency stop\"", "1", "yx 20 \"Emergency stop\" state=1"},
        {"\"Power module fault\" --port 2", "1", "yx2 129 \"Power module fault\" state=1"},
        {"\"State of charge\" --port 1", "55",
         "yc 103 \"State of charge\" raw=55 coefficient=1 value=55 text=\"\""},
        {"\"State of charge\" --port 2", "56",
         "yc 231 \"State of charge\" raw=56 coefficient=1 value=56 text=\"\""},
        // Telemetry has rows of its own from port 3 on, at the place that the reports read.
        {"\"State of charge\" --port 3", "4294967295",
         "yc 359 \"State of charge\" raw=4294967295 coefficient=1 value=4.294967e+09 text=\"\""},
    };
    for (const auto& item : kCases) {
        const Outcome set = Call(std::string("set ") + item.point + ' ' + item.value);
        EXPECT_EQ(0, set.exit) << set.err;
        EXPECT_EQ(item.printed + std::string("\n"), Call(std::string("get ") + item.point).out);
    }
    ASSERT_EQ(0, Call("set yc 231 --raw 3805 --coefficient 0.1 --text \"a\"").exit);
    EXPECT_EQ("yc 231 \"State of charge\" raw=3805 coefficient=0.100000001 value=380.5 text=\"a\"\n",
              Call("get --port 2 \"State of charge\"").out);
    EXPECT_EQ(R"({"table":"yc","index":231,"name":"State of charge","port":2,"raw":3805,)"
              R"("coefficient":0.100000001,"value":380.5,"text":"a"})"
              "\n",
              Call("get \"State of charge\" --port 2 --json").out);
    ASSERT_EQ(0, Call("set yc 231 --coefficient nan").exit);
    EXPECT_NE(
        std::string::npos,
        Call("get \"State of charge\" --port 2 --json").out.find("\"coefficient\":null,\"value\":null"));
}

TEST_F(ZorctlNames, Refused) {
    const struct {
        const char* line;
        int exit;
        const char* says;
    } kCases[] = {
        {"set \"Gun conected\" 1", 1,
         "no point is named \"Gun conected\"; near: \"Gun connected\" (yx 134), \"Gun locked\" (yx 136)"},
        {"set lock 1", 1, "no point is named \"lock\"; near: \"Gun locked\" (yx 136)"},
        {"get xyzzy", 1, "no point is named \"xyzzy\""},
        {"get \"Emergency stop\" --port 2", 1, "\"Emergency stop\" (yx 20) has no copy for port 2"},
        {"get \"Gun connected\" --port 3", 1, "port 3: the station has 2"},
        {"set \"Gun connected\" 256", 2, "'256': on, off or a state from 0 to 255 expected"},
        {"set \"Gun connected\" 1x", 2, "'1x': on, off or a state from 0 to 255 expected"},
        {"set \"State of charge\" 4294967296", 2, "'4294967296': a raw value expected"},
        {"set \"Gun connected\"", 2, "set takes a table, or the name of a point and its value; see --help"},
        {"get", 2, "get takes a table, or the name of a point; see --help"},
        {"get \"Gun connected\" --dir /nowhere", 1, "/nowhere/zorconfig.db: not there"},
        {"get \"Gun connected\"", 1, "there is no shared memory yet: nothing to read"},
    };
    Make(2);
    for (const auto& item : kCases) {
        const Outcome outcome = Call(item.line);
        EXPECT_EQ(item.exit, outcome.exit) << item.line;
        EXPECT_EQ("zorctl: " + std::string(item.says) + '\n', outcome.err) << item.line;
    }
    EXPECT_LT(shmget(CShmLayout::kKey, 0, 0), 0) << "made by a command that was refused";

    MakeFrom("Door,5,\nDoor,134,\nLamp,1,1\nlamp,2,1\nFan,7,\nFan,7,\n",
             "First,2\nDoor,150\nVolt,101\nVolt,150\n");
    EXPECT_EQ(
        "zorctl: several points bear the name: \"Door\" (yx 5), \"Door\" (yx 134), \"Door\" (yc 150); give "
        "table and index\n",
        Call("set Door 1").err);
    EXPECT_EQ(
        "zorctl: several points bear the name: \"Volt\" (yc 101), \"Volt\" (yc 150); give table and index\n",
        Call("set Volt 1").err);
    EXPECT_EQ(1, Call("set LAMP 1").exit);
    EXPECT_EQ(0, Call("set lamp 1").exit);  // spelt exactly so
    EXPECT_EQ(0, Call("set Fan 1").exit);   // two rows, one place
    EXPECT_EQ("1\n", Call("get yx2 2").out);
}

// What is set by name is what the loaded list has under that name and port.
TEST_F(ZorctlNames, PlacesAreThoseOfTheLoader) {
    for (const int ports : {1, 2, 8}) {
        Make(ports);
        CSqliteDb database;
        ASSERT_EQ(SQLITE_OK, database.Open(AppFile(kPointSettingFile).c_str(), 0));
        const CSqliteTable table(database, kSelectYxDc);
        std::list<YxPointRecord> points;
        for (int row = 0; row < table.Rows(); ++row) AppendYxPoint(points, ParseYxRow(table, row), ports);
        for (const YxPointRecord& point : points) {
            if (std::string(point.name) != "Charging") continue;
            const std::string port = point.port == 0 ? "" : " --port " + std::to_string(point.port);
            EXPECT_EQ(0, Call("set Charging " + std::to_string(point.port + 1) + port).exit);
            EXPECT_EQ(point.port + 1, CShmCTRL().Signal(point.pointNumber));
        }
    }
}

}  // namespace
