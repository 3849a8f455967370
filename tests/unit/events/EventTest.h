// What the tests of the event database share.
#pragma once

#include <gmock/gmock.h>

#include "System/AppFiles.h"
#include "points/PointSettings.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"

// An error text of this statement, as it is printed.
inline std::string InsertError(const std::string& why) {
    return "insert into zorsoe.db error!: " + why + "\n";
}

class CEventTest : public CStationTest {
  protected:
    const std::string path = AppFile(kEventFile);
    const std::string now = "2024-03-05 09:45:00";  // FakeClock::kStart in local time

    Captured Init() {
        return MaskedOutput([this] { EXPECT_EQ(0, runtime.InitSOE()); });
    }
    Captured Insert(int value, int point, int table, const std::string& event) {
        return MaskedOutput([&] { EXPECT_EQ(0, runtime.InsertSOE(value, point, table, event)); });
    }
    // One tick of the detection.
    Captured Walk() {
        return MaskedOutput([this] { runtime.DetectStatusChanges(); });
    }
    static Captured MaskedOutput(const std::function<void()>& run) {
        Captured captured = Capture(run);
        captured.out = Masked(captured.out);
        return captured;
    }

    void AddPoint(const char* name, int level, int point, int source = kSourceYx) {
        YxPointRecord record{};
        std::strncpy(record.name, name, sizeof record.name - 1);
        record.level = level;
        record.pointNumber = point;
        record.source = source;
        AppendYxPoint(runtime.m_yxPoints, record, 1);
    }

    std::vector<std::string> Soe(const std::string& columns = "*") const {
        return QueryRows(path, "SELECT " + columns + " FROM tagSOE ORDER BY id");
    }
    std::vector<std::string> ErrMsg(const std::string& columns = "*") const {
        return QueryRows(path, "SELECT " + columns + " FROM tagErrMsg ORDER BY id");
    }

    static std::string ReadLine(std::int64_t lastId) {
        return Line("InsertSOE", "the last record id is " + std::to_string(lastId) + "\n");
    }

    CSqlWatch watch;
};
