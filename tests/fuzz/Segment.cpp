// Any content of the segment through detection, refresh and every builder, while time goes on.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "System/DateTime.h"
#include "System/Numbers.h"
#include "ipc/Commands.h"
#include "points/PointSettings.h"
#include "points/Signals.h"
#include "reports/ChargingStatus.h"
#include "tests/fuzz/Fuzz.h"

using Layout = CShmLayout;
static constexpr Layout::Table kTables[] = {Layout::kYc,       Layout::kYx,     Layout::kYx2,   Layout::kDd,
                                            Layout::kGunState, Layout::kDevice, Layout::kCharge};

// The points that the reports ask for, so that no input has to find their numbers.
static void AddPoints(CTestRuntime& runtime, YcPointRecord yc) {
    const auto addYc = [&](int number) {
        yc.pointNumber = number;
        AppendYcPoint(runtime.m_ycGroups, yc, runtime.m_portCount);
    };
    for (const int number : {kYcIdleVoltage, kYcIdleVoltage, kYcIdleCurrent}) addYc(number);
    for (const ChargingField& field : kChargingFields) addYc(field.number);
    YxPointRecord yx{};
    for (const int number :
         {kSignalStationFault, kSignalEmergencyStop, kSignalStationAlarm, kSignalPortFault, kSignalPortAlarm,
          kSignalGunConnected, kSignalGunInHolder, kSignalGunLocked, kSignalControl, kSignalCharging}) {
        yx.pointNumber = number;
        yx.address = number + 1;
        AppendYxPoint(runtime.m_yxPoints, yx, runtime.m_portCount);
    }
    runtime.SelectReportedPoints();
    runtime.FindReportedPoints();
}

// Number of ports, scale and offset of the telemetry points, then steps of table, index, length and bytes for
// the entry there; a table from 128 on is a tick instead, that many minutes later.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kHead = 9;
    constexpr std::size_t kStep = 4;
    if (size < kHead) return 0;
    FuzzStation& station = FuzzStation::WithPorts(data[0]);
    YcPointRecord yc{};
    std::memcpy(&yc.scale, data + 1, sizeof yc.scale);
    yc.offset = static_cast<std::uint32_t>(GetLe(data + 5, 4));
    AddPoints(station.runtime, yc);
    int ticks = 0;
    for (std::size_t at = kHead; at + kStep <= size && ticks < 8;) {
        const Layout::Table& table = kTables[data[at] % std::size(kTables)];
        const auto number = static_cast<int>(GetLe(data + at + 1, 2));
        const auto length = std::min({std::size_t{data[at + 3]}, table.entrySize, size - at - kStep});
        if (data[at] < 0x80) {
            std::memcpy(station.Entry(table, number % table.entries), data + at + kStep, length);
        } else {
            FakeClock::Set(std::time(nullptr) + number % 128 * 60);
            station.Tick();
            ++ticks;
        }
        at += kStep + length;
    }
    if (CDateTime::Now().Hour() != CDateTime(FakeClock::kStart).Hour()) {
        const std::uint8_t wholeDay[kHistoryAreaSize] = {5, 3, 0x24, 0x20, kWholeDay};
        station.runtime.MsgCall_A1_16(wholeDay, static_cast<std::uint32_t>(station.runtime.m_portCount / 2));
        station.CheckPosted();
        station.history.Exec("DELETE FROM tagYC");
    }
    station.Clear();
    return 0;
}
