// Any content of the segment through detection, refresh and every builder, while time goes on.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "System/DateTime.h"
#include "System/Numbers.h"
#include "tests/fuzz/Fuzz.h"
#include "tools/zorctl/settings/StationFiles.h"
#include "tools/zorctl/settings/StationRows.h"

using Layout = CShmLayout;
static constexpr Layout::Table kTables[] = {Layout::kYc,       Layout::kYx,     Layout::kYx2,   Layout::kDd,
                                            Layout::kGunState, Layout::kDevice, Layout::kCharge};

// A made station's points, among them all that the reports ask for, with other factors.
static void AddPoints(CTestRuntime& runtime, float scale, std::uint32_t offset) {
    static const std::string kTrouble =
        WritePointSettings(AppFile(kPointSettingFile), StationYxRows(), StationYcRows(kMaxPorts));
    Require(kTrouble.empty() && runtime.InitPointSettingYX() + runtime.InitPointSettingYC() == 0,
            "no points");
    for (YcGroup& group : runtime.m_ycGroups)
        for (YcPointRecord& point : group.points) {
            point.scale = scale;
            point.offset = offset;
        }
}

// Number of ports, scale and offset of the telemetry points, then steps of table, index, length and bytes for
// the entry there; a table from 128 on is a tick instead, that many minutes later.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kHead = 9;
    constexpr std::size_t kStep = 4;
    if (size < kHead) return 0;
    FuzzStation& station = FuzzStation::WithPorts(data[0]);
    float scale = 0;
    std::memcpy(&scale, data + 1, sizeof scale);
    AddPoints(station.runtime, scale, static_cast<std::uint32_t>(GetLe(data + 5, 4)));
    int ticks = 0;
    for (std::size_t at = kHead; at + kStep <= size && ticks < 8;) {
        const Layout::Table& table = kTables[data[at] % std::size(kTables)];
        const auto number = static_cast<int>(GetLe(data + at + 1, 2));
        const auto length = std::min({std::size_t{data[at + 3]}, table.entrySize, size - at - kStep});
        if (data[at] < 0x80) {
            const auto entry = static_cast<std::size_t>(number % table.entries) * table.entrySize;
            std::memcpy(station.Segment() + table.offset + entry, data + at + kStep, length);
        } else {
            FakeClock::Set(std::time(nullptr) + number % 128 * 60);
            station.Tick();
            ++ticks;
        }
        at += kStep + length;
    }
    station.history.Exec("DELETE FROM tagYC");
    return 0;
}
